// Who the user is, and on which platform.
#pragma once

#include <QString>

namespace env {

// The session's user: the environment variable USER, else USERNAME, else the credentials file's user name.
QString userName();

// Line 1 and line 2 of the credentials file. Each is read when it is first asked for and kept once it is not
// empty; until then every call reads the file again. Only line feeds are stripped: a carriage return stays.
QString credentialsUserName();
QString credentialsPassword();

// Replace what credentialsUserName() and credentialsPassword() return.
void setCredentialsUserName(const QString& name);
void setCredentialsPassword(const QString& password);

// "windows": the catalogue's name of the platform that local programs are started on.
QString platformName();

} // namespace env
