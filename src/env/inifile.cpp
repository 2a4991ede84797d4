#include "env/inifile.h"

#include <QFile>
#include <QSettings>
#include <QVariant>

namespace env {

namespace {

// Of slashes alone nothing is left to name a value by.
bool isKey(const QString& key)
{
    return key.count(QLatin1Char('/')) < key.size();
}

} // namespace

QString readValue(const QString& path, const QString& key)
{
    if (!isKey(key))
        return QString();
    return QSettings(path, QSettings::IniFormat).value(key, QVariant()).toString();
}

QString readValueWithFallback(const QString& primary, const std::function<QString()>& fallback,
                              const QString& key)
{
    if (!isKey(key))
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
    if (isKey(key))
        QSettings(path, QSettings::IniFormat).setValue(key, value);
}

} // namespace env
