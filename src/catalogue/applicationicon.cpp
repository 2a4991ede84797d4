#include "catalogue/applicationicon.h"

#include "server/twclient.h"

#include <QDir>
#include <QPixmap>

namespace catalogue {

QIcon serverIcon(TWClient& server, const QString& appId)
{
    QPixmap picture;
    picture.loadFromData(server.sendCommandForBytes(QLatin1String("get_application_icon?") + appId));
    return picture.isNull() ? QIcon() : QIcon(picture);
}

QIcon builtInIcon(const QString& fileName)
{
    const QIcon icon(QStringLiteral(":/icons/applications") + QDir::separator() + fileName);
    return icon.availableSizes().isEmpty() ? QIcon() : icon;
}

} // namespace catalogue
