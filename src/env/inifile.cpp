#include "env/inifile.h"

#include <QFile>
#include <QSettings>
#include <QVariant>

namespace env {

QString readValue(const QString& path, const QString& key)
{
    if (key.isEmpty())
        return QString();
    return QSettings(path, QSettings::IniFormat).value(key, QVariant()).toString();
}

QString readValueWithFallback(const QString& primary, const std::function<QString()>& fallback,
                              const QString& key)
{
    if (key.isEmpty())
        return QString();
    QString value;
    if (QFile::exists(primary))
        value = readValue(primary, key);
    if (value.isEmpty())
        value = readValue(fallback(), key);
    return value;
}

QStringList childGroups(const QString& path)
{
    return QSettings(path, QSettings::IniFormat).childGroups();
}

QStringList valuesPerGroup(const QString& path, const QString& key)
{
    const QSettings file(path, QSettings::IniFormat);
    QStringList values;
    for (const QString& group : file.childGroups())
        values.append(file.value(group + QLatin1Char('/') + key, QVariant()).toString());
    return values;
}

void writeValue(const QString& path, const QString& key, const QString& value)
{
    if (!key.isEmpty()) // it would change nothing either, but warn
        QSettings(path, QSettings::IniFormat).setValue(key, value);
}

} // namespace env
