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

// Whether programs on `host` are taken for this machine's own. Wanted: the comparisons are such that the
// answer is true for every host; which applications are valid, and which are reached through the remote
// client, relies on it.
bool isLocalHost(const QString& host);
bool isLocalHost(const QString& host, const LocalHost& local);

} // namespace env
