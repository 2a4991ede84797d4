#include "env/network.h"

#include "env/identity.h"
#include "env/settings.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkInterface>

namespace env {

QString homeSharePath()
{
    return QLatin1String("\\\\") + readSetting(QLatin1String(key::sambaServer)) + QLatin1Char('\\') +
           credentialsUserName();
}

QString sharedFolderPath()
{
    return QLatin1String("\\\\") + readSetting(QLatin1String(key::sambaServer)) +
           readSetting(QLatin1String(key::sambaSharedPath));
}

bool isRemoteHost(const QString& host)
{
    if (host != QLatin1String("127.0.0.1"))
        return true;
    // A comparison with "localhost" would have no say here: such a host has been answered for above.
    const QString localName = QHostInfo::localHostName();
    if (host.compare(localName, Qt::CaseInsensitive) != 0)
        return true;
    if (host.compare(localName + QLatin1Char('.') + QHostInfo::localDomainName(), Qt::CaseInsensitive) != 0)
        return true;
    const QHostAddress hostAddress(host);
    for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
        if (address.protocol() == QAbstractSocket::IPv4Protocol && address == hostAddress)
            return true;
    }
    return false;
}

} // namespace env
