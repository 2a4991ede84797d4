#include "env/log.h"

#include "env/paths.h"

#include <QFile>
#include <QLocale>
#include <QTextStream>

namespace env {

namespace {

void writeEntry(const QString& level, const QString& message)
{
    const QString line = logLine(QDateTime::currentDateTime(), level, message);
    QFile file(logPath());
    if (file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        QTextStream stream(&file);
        stream << line << "\n";
    }
    qDebug("%s", line.toUtf8().constData());
}

} // namespace

void logError(const QString& message)
{
    writeEntry(QStringLiteral("Error"), message);
}

void logInfo(const QString& message)
{
    writeEntry(QStringLiteral("Info"), message);
}

QString logLine(const QDateTime& time, const QString& level, const QString& message)
{
    // Qt::TextDate has this form but translates the names.
    const QString date = QLocale::c().toString(time, QStringLiteral("ddd MMM d HH:mm:ss yyyy"));
    return date + QLatin1String(" - ") + level + QLatin1String(": ") + message;
}

} // namespace env
