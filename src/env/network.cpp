#include "env/network.h"

#include "env/identity.h"
#include "env/settings.h"

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

namespace {

// Whether only the network can tell: a host of another name counts as local without a look at it.
bool isLoopbackNamed(const QString& host, const QString& localName)
{
    return host == QLatin1String("127.0.0.1") && host.compare(localName, Qt::CaseInsensitive) == 0;
}

} // namespace

bool isLocalHost(const QString& host)
{
    const QString name = QHostInfo::localHostName();
    return !isLoopbackNamed(host, name) ||
           isLocalHost(host, {name, QHostInfo::localDomainName(), QNetworkInterface::allAddresses()});
}

bool isLocalHost(const QString& host, const LocalHost& local)
{
    // A comparison with "localhost" would have no say here: such a host is not named so.
    if (!isLoopbackNamed(host, local.name))
        return true;
    if (host.compare(local.name + QLatin1Char('.') + local.domain, Qt::CaseInsensitive) != 0)
        return true;
    const QHostAddress hostAddress(host);
    for (const QHostAddress& address : local.addresses) {
        if (address.protocol() == QAbstractSocket::IPv4Protocol && address == hostAddress)
            return true;
    }
    return false;
}

} // namespace env
