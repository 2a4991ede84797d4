// The user's log: one line per entry, "Tue Jul 5 14:03:07 2016 - Info: message".
//
// The file is opened, appended to and closed for every entry, in the encoding of the system's code page; it
// is never truncated and never rotated. An entry also goes to Qt's debug output, whether or not the file
// could be opened. Used on the GUI thread only; messages come finished, without a line end.
#pragma once

#include <QDateTime>
#include <QString>

namespace env {

void logError(const QString& message);
void logInfo(const QString& message);

// The line of an entry, without its line end. Day and month names are English whatever the locale.
QString logLine(const QDateTime& time, const QString& level, const QString& message);

} // namespace env
