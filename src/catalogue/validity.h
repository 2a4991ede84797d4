// Which applications can run here.
#pragma once

#include <QString>
#include <QStringList>

namespace catalogue {

// What is known of the place where an application runs.
struct Place
{
    QString server;   // host
    QString os;       // "windows" or another system's name
    QString protocol; // how another host is reached
};

// Whether a program at `path` can be started: on this machine when it is there and the system is Windows, on
// another host when there is a protocol for it. The second form is the rule alone, for a host that counts as
// this machine or does not.
bool isValid(const QString& path, const Place& place);
bool isValid(const QString& path, bool localHost, const Place& place);

// The ids among `ids` that are valid by their catalogue entries. A command without a folder is looked for
// along the environment's PATH, in its order, until one is found.
QStringList validAmong(const QStringList& ids);

} // namespace catalogue
