#include "support/logreader.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QStringList>
#include <QThread>

bool parseLogLine(const QString& line, LogEntry* entry)
{
    static const QRegularExpression form(
        QStringLiteral("\\A(\\w{3} \\w{3} \\d{1,2} \\d\\d:\\d\\d:\\d\\d \\d{4}) - (Error|Info): (.*)\\z"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        return false;
    const QDateTime time =
        QLocale::c().toDateTime(match.captured(1), QStringLiteral("ddd MMM d HH:mm:ss yyyy"));
    if (!time.isValid())
        return false;
    *entry = {time, match.captured(2), match.captured(3)};
    return true;
}

LogReader::LogReader(const QString& path, qint64 offset)
    : m_path(path)
    , m_offset(offset)
{}

QList<LogEntry> LogReader::next()
{
    QList<LogEntry> entries;
    entries.swap(m_pending);

    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(m_offset))
        return entries;
    for (;;) {
        const QByteArray line = file.readLine();
        if (!line.endsWith('\n')) // not complete yet
            break;
        m_offset += line.size();
        const QString text = QString::fromLocal8Bit(line.chopped(1));
        LogEntry entry;
        if (!parseLogLine(text, &entry))
            entry.message = text;
        entries.append(entry);
    }
    return entries;
}

bool LogReader::waitFor(const QString& text, int milliseconds, QStringList* seen)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        QList<LogEntry> entries = next();
        while (!entries.isEmpty()) {
            const LogEntry entry = entries.takeFirst();
            if (entry.message.contains(text)) {
                m_pending = entries;
                return true;
            }
            if (seen)
                seen->append(entry.message);
        }
        if (timer.elapsed() >= milliseconds)
            return false;
        QThread::msleep(20);
    }
}
