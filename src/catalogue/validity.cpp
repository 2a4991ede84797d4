#include "catalogue/validity.h"

#include "catalogue/cataloguefiles.h"
#include "catalogue/launchcommand.h"
#include "env/identity.h"
#include "env/network.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace catalogue {

namespace {

bool isValidAlongPath(const QString& command, const Place& place)
{
    const QStringList folders = QString::fromLocal8Bit(qgetenv("PATH")).split(QLatin1Char(';'));
    return std::any_of(folders.begin(), folders.end(), [&](const QString& folder) {
        return isValid(folder + QDir::separator() + command, place);
    });
}

bool isValidEntry(const QString& id)
{
    const QString command = applicationValue(id, QStringLiteral("command"));
    const Place place = {applicationValue(id, QStringLiteral("server")),
                         applicationValue(id, QStringLiteral("os")),
                         applicationValue(id, QStringLiteral("protocol"))};
    return command.contains(QDir::separator()) ? isValid(expandEnvironment(command), place)
                                               : isValidAlongPath(command, place);
}

} // namespace

bool isValid(const QString& path, const Place& place)
{
    return isValid(path, env::isLocalHost(place.server), place);
}

bool isValid(const QString& path, bool localHost, const Place& place)
{
    if (!localHost)
        return !place.protocol.isEmpty();
    // The look at the disk comes last: it may be slow, and there is one for every folder of the PATH.
    return place.os.compare(env::platformName(), Qt::CaseInsensitive) == 0 && QFileInfo::exists(path);
}

QStringList validAmong(const QStringList& ids)
{
    QStringList valid;
    for (const QString& id : ids) {
        qDebug("Application: %s", qUtf8Printable(id));
        if (isValidEntry(id))
            valid.append(id);
    }
    return valid;
}

} // namespace catalogue
