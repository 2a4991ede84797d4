#include "winapi/remoteclientmanager.h"

#include "winapi/networkdrives.h"

namespace {

QString shareName(QString remoteName)
{
    return remoteName.remove(QLatin1String("\\\\TSCLIENT\\"), Qt::CaseInsensitive);
}

} // namespace

RemoteClientManager::RemoteClientManager(QObject* parent)
    : QObject(parent)
{}

void RemoteClientManager::start()
{
    m_drives.clear();
    m_shares.clear();
    winapi::forEachPageOfDiskResources([this](const QList<winapi::NetworkResource>& page) {
        for (const winapi::NetworkResource& resource : page) {
            if (!resource.localName.isEmpty())
                add(resource.localName, shareName(resource.remoteName), false);
        }
        for (const winapi::NetworkResource& resource : page) {
            const QString share = shareName(resource.remoteName);
            if (m_shares.contains(share))
                continue;
            const QString drive = winapi::connectClientShare(share);
            if (!drive.isEmpty())
                add(drive, share, true);
        }
    });
    emit update();
}

void RemoteClientManager::stop()
{
    for (int i = 0; i < m_drives.size(); ++i) {
        if (m_added.at(i))
            winapi::removeDrive(m_drives.at(i));
    }
}

void RemoteClientManager::add(const QString& drive, const QString& share, bool connectedHere)
{
    m_drives.append(drive);
    m_shares.append(share);
    m_added.append(connectedHere);
}
