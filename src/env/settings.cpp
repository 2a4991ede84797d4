#include "env/settings.h"

#include "env/inifile.h"
#include "env/paths.h"

namespace env {

namespace {
bool s_standardWindowManager = false;
} // namespace

QString readSetting(const QString& key)
{
    return readValue(settingsPath(), key);
}

bool readBooleanSetting(const QString& key)
{
    return isTrue(readSetting(key));
}

bool isTrue(const QString& value)
{
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (isNumber)
        return number != 0;
    return value.toLower() == QLatin1String("true");
}

int serverPort()
{
    return readSetting(QLatin1String(key::serverPort)).toInt();
}

void readWindowManagerBehaviour()
{
    const QString behaviour = readSetting(QLatin1String(key::windowManagerBehaviour));
    s_standardWindowManager = behaviour.compare(QLatin1String("standard"), Qt::CaseInsensitive) == 0;
}

bool standardWindowManager()
{
    return s_standardWindowManager;
}

} // namespace env
