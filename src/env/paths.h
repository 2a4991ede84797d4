// Where the program's files lie. Every function asks afresh: the home folder and the environment may change.
#pragma once

#include <QString>

namespace env {

// The machine-wide settings file: the 64-bit program-files folder (environment variable PROGRAMW6432, taken
// as bytes in the ANSI code page) followed by "\Tidewell Desktop\quillet.ini". Without the variable the path
// is relative to the current drive.
QString settingsPath();

// The user's token file, with the platform's separator, as it is also written to the debug output.
QString tokenPath();

// The user's credentials file: line 1 the user name, line 2 the password. Never written by the program.
QString credentialsPath();

// The user's log file.
QString logPath();

} // namespace env
