// Network paths of the user's files, and where a host is.
#pragma once

#include <QHostAddress>
#include <QList>
#include <QString>

namespace env {

// The user's home share, "\\SERVER\USER": SambaServer and the credentials user name.
QString homeSharePath();

// The shared folder, "\\SERVER\PATH": SambaServer and SambaSharedPath, which brings its own backslash.
QString sharedFolderPath();

// How this machine is called and reached.
struct LocalHost
{
    QString name;
    QString domain;
    QList<QHostAddress> addresses;
};

// Whether programs on `host` have to be started through remote desktop. Wanted: the comparisons are such that
// the answer is true for every host, this machine's own names and addresses included; remote launches rely on
// it.
bool isRemoteHost(const QString& host);
bool isRemoteHost(const QString& host, const LocalHost& local);

} // namespace env
