// Icons of applications.
#pragma once

#include <QIcon>
#include <QString>

class TWClient;

namespace catalogue {

// The server's icon of an application; null when it has none, or none that is a picture. Blocks.
QIcon serverIcon(TWClient& server, const QString& appId);

// The built-in icon of this file name ("kcalc.png"); null when there is no such picture. (A QIcon of a path
// is not null whatever lies there.)
QIcon builtInIcon(const QString& fileName);

} // namespace catalogue
