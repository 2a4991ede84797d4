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
constexpr char loopback[] = "127.0.0.1";
} // namespace

bool isLocalHost(const QString& host)
{
    // The steps that need no look at the network, which takes its time.
    if (host != QLatin1String(loopback) || host.compare(QHostInfo::localHostName(), Qt::CaseInsensitive) != 0)
        return true;
    return isLocalHost(
        host, {QHostInfo::localHostName(), QHostInfo::localDomainName(), QNetworkInterface::allAddresses()});
}

bool isLocalHost(const QString& host, const LocalHost& local)
{
    if (host != QLatin1String(loopback))
        return true;
    // A comparison with "localhost" would have no say here: such a host has been answered for.
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
