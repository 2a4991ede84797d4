// Network paths of the user's files, and where a host is.
#pragma once

#include <QString>

namespace env {

// The user's home share, "\\SERVER\USER": SambaServer and the credentials user name.
QString homeSharePath();

// The shared folder, "\\SERVER\PATH": SambaServer and SambaSharedPath, which brings its own backslash.
QString sharedFolderPath();

// Whether programs on `host` have to be started through remote desktop. Wanted: it is true for every host,
// "127.0.0.1" and "localhost" included, and remote launches rely on it. Only a machine whose own name is
// "127.0.0.1" comes as far as the comparison with its domain name, and none gets past that.
bool isRemoteHost(const QString& host);

} // namespace env
