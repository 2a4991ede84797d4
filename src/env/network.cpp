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

bool isLoopback(const QString& host)
{
    return host == QLatin1String("127.0.0.1");
}

} // namespace

bool isLocalHost(const QString& host)
{
    if (!isLoopback(host))
        return true; // without a look at the network, which takes its time
    return isLocalHost(
        host, {QHostInfo::localHostName(), QHostInfo::localDomainName(), QNetworkInterface::allAddresses()});
}

bool isLocalHost(const QString& host, const LocalHost& local)
{
    if (!isLoopback(host))
        return true;
    // A comparison with "localhost" would have no say here: such a host has been answered for above.
    if (host.compare(local.name, Qt::CaseInsensitive) != 0)
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
