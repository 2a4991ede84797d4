#include "env/paths.h"

#include <QDir>

namespace env {

QString settingsPath()
{
    return QString::fromLocal8Bit(qgetenv("PROGRAMW6432")) + QLatin1String("\\Tidewell Desktop\\quillet.ini");
}

QString tokenPath()
{
    return QDir::homePath() + QDir::separator() + QLatin1String(".tidewell.ini");
}

QString credentialsPath()
{
    return QDir::homePath() + QLatin1String("/.credentials");
}

QString logPath()
{
    return QDir::homePath() + QLatin1String("/.quillet.log");
}

} // namespace env
