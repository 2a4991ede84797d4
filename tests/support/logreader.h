#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

// One entry of the program's log file.
struct LogEntry
{
    QDateTime time; // local time
    QString level;  // "Error" or "Info"
    QString message;
};

// Reads a line of the log strictly: "Tue Jul 5 14:03:07 2016 - Info: message". False when it is anything
// else.
bool parseLogLine(const QString& line, LogEntry* entry);

// Reads the log file of a program that is running: entries come one by one as they are completed.
class LogReader
{
public:
    // Passes over the file's first `offset` bytes.
    explicit LogReader(const QString& path, qint64 offset = 0);

    // The entries that were completed since the last call. A file that does not exist yet has none; a line
    // that is no entry comes with an empty level and the line as its message.
    QList<LogEntry> next();

    // Waits until a new entry's message contains `text`, for `milliseconds` at most. Entries before it are
    // consumed. On failure, `seen` (when given) gets the messages that came instead.
    bool waitFor(const QString& text, int milliseconds, QStringList* seen = nullptr);

private:
    QString m_path;
    qint64 m_offset;
    QList<LogEntry> m_pending; // read but not asked for yet
};
