// Drive letters and network resources.
#include "state.h"

#include <winnetwk.h>

#include <algorithm>
#include <cstring>

using simwin::NetworkResource;
using simwin::State;

namespace simwin {

void setLocalDrives(const QByteArray& letters)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.localDrives = letters;
}

void addNetworkResource(const QString& remoteName, const QString& localName)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.resources.append({remoteName, localName});
}

void removeNetworkResource(const QString& remoteName)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    const auto isIt = [&](const NetworkResource& resource) { return resource.remoteName == remoteName; };
    windows.resources.erase(std::remove_if(windows.resources.begin(), windows.resources.end(), isIt),
                            windows.resources.end());
}

QList<QPair<QString, QString>> networkResources()
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    QList<QPair<QString, QString>> list;
    for (const NetworkResource& resource : qAsConst(windows.resources))
        list.append({resource.localName, resource.remoteName});
    return list;
}

void setNetworkPageSize(int entries)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.networkPageSize = entries;
}

void setUntrueNetworkCount(bool untrue)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.untrueNetworkCount = untrue;
}

int openEnumerations()
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    return windows.enumerations.size();
}

void setEndlessNetwork(bool endless)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.endlessNetwork = endless;
}

} // namespace simwin

namespace {

// The letters in use, sorted.
QByteArray letters(const State& windows)
{
    QByteArray all = windows.localDrives;
    for (const NetworkResource& resource : windows.resources) {
        const QString& name = resource.localName;
        if (name.size() == 2 && name.endsWith(QLatin1Char(':')) && !all.contains(name.at(0).toLatin1()))
            all.append(name.at(0).toLatin1());
    }
    std::sort(all.begin(), all.end());
    return all;
}

// Puts `text` with its zero in front of `end`, which it moves down. Null when there is no room above `start`.
LPWSTR placeText(const QString& text, char* start, char*& end)
{
    const int bytes = (text.size() + 1) * 2;
    if (end - start < bytes)
        return nullptr;
    end -= bytes;
    std::memcpy(end, text.utf16(), static_cast<size_t>(bytes));
    return reinterpret_cast<LPWSTR>(end);
}

// Puts one entry at `start`, its texts at the end of the room. False when it does not fit.
bool place(const NetworkResource& resource, char*& start, char*& end)
{
    if (end - start < static_cast<std::ptrdiff_t>(sizeof(NETRESOURCEW)))
        return false;
    char* const texts = start + sizeof(NETRESOURCEW);
    char* newEnd = end;
    NETRESOURCEW entry = {};
    entry.dwScope = RESOURCE_CONNECTED;
    entry.dwType = RESOURCETYPE_DISK;
    if (!resource.localName.isNull() && !(entry.lpLocalName = placeText(resource.localName, texts, newEnd)))
        return false;
    if (!resource.remoteName.isNull() &&
        !(entry.lpRemoteName = placeText(resource.remoteName, texts, newEnd)))
        return false;
    std::memcpy(start, &entry, sizeof entry);
    start = texts;
    end = newEnd;
    return true;
}

QString argument(LPCWSTR text)
{
    return text ? QString::fromWCharArray(text) : QStringLiteral("(null)");
}

} // namespace

DWORD WINAPI GetLogicalDriveStringsW(DWORD size, LPWSTR roots)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "GetLogicalDriveStringsW", {QString::number(size)}))
        return 0;
    const QByteArray drives = letters(windows);
    const DWORD length = static_cast<DWORD>(drives.size()) * 4;
    if (size < length + 1)
        return length + 1;
    for (const char drive : drives) {
        *roots++ = static_cast<WCHAR>(drive);
        *roots++ = u':';
        *roots++ = u'\\';
        *roots++ = 0;
    }
    *roots = 0;
    return length;
}

DWORD WINAPI WNetOpenEnumW(DWORD scope, DWORD type, DWORD usage, LPNETRESOURCEW, LPHANDLE enumeration)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "WNetOpenEnumW",
                       {QString::number(scope), QString::number(type), QString::number(usage)}))
        return GetLastError();
    static quintptr last = 0x700000;
    *enumeration = reinterpret_cast<HANDLE>(++last);
    windows.enumerations.insert(*enumeration, {windows.resources, 0});
    return NO_ERROR;
}

DWORD WINAPI WNetEnumResourceW(HANDLE enumeration, LPDWORD count, LPVOID buffer, LPDWORD size)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "WNetEnumResourceW", {QString::number(*count), QString::number(*size)}))
        return GetLastError();
    const auto found = windows.enumerations.find(enumeration);
    if (found == windows.enumerations.end())
        return ERROR_INVALID_HANDLE;
    if (!buffer)
        return ERROR_INVALID_PARAMETER;
    char* start = static_cast<char*>(buffer);
    char* end = start + *size;
    int placed = 0;
    while (found->next < found->resources.size() && static_cast<DWORD>(placed) < *count &&
           (windows.networkPageSize == 0 || placed < windows.networkPageSize) &&
           place(found->resources.at(found->next), start, end)) {
        ++found->next;
        ++placed;
    }
    if (!windows.untrueNetworkCount)
        *count = static_cast<DWORD>(placed);
    const bool more = found->next < found->resources.size();
    if (windows.endlessNetwork && !more)
        found->next = 0;
    if (more || windows.endlessNetwork)
        return ERROR_MORE_DATA;
    return placed > 0 ? NO_ERROR : ERROR_NO_MORE_ITEMS;
}

DWORD WINAPI WNetCloseEnum(HANDLE enumeration)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    simwin::enter(windows, "WNetCloseEnum");
    return windows.enumerations.remove(enumeration) ? NO_ERROR : ERROR_INVALID_HANDLE;
}

DWORD WINAPI WNetAddConnection2W(LPNETRESOURCEW resource, LPCWSTR password, LPCWSTR userName, DWORD flags)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "WNetAddConnection2W",
                       {QString::number(resource->dwScope), QString::number(resource->dwType),
                        QString::number(resource->dwDisplayType), QString::number(resource->dwUsage),
                        argument(resource->lpComment), argument(resource->lpProvider),
                        argument(resource->lpLocalName), argument(resource->lpRemoteName), argument(password),
                        argument(userName), QString::number(flags)}))
        return GetLastError();
    const QString localName =
        resource->lpLocalName ? QString::fromWCharArray(resource->lpLocalName) : QString();
    if (!localName.isEmpty() && letters(windows).contains(localName.at(0).toLatin1()))
        return ERROR_ALREADY_ASSIGNED;
    const QString remoteName = QString::fromWCharArray(resource->lpRemoteName);
    const auto isIt = [&](const NetworkResource& other) {
        return other.remoteName.compare(remoteName, Qt::CaseInsensitive) == 0;
    };
    if (std::none_of(windows.resources.begin(), windows.resources.end(), isIt))
        return ERROR_BAD_NET_NAME;
    windows.resources.append({remoteName, localName});
    return NO_ERROR;
}

DWORD WINAPI WNetCancelConnection2W(LPCWSTR name, DWORD flags, BOOL force)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "WNetCancelConnection2W",
                       {argument(name), QString::number(flags), QString::number(force)}))
        return GetLastError();
    for (int i = 0; i < windows.resources.size(); ++i) {
        if (windows.resources.at(i).localName == QString::fromWCharArray(name)) {
            windows.resources.removeAt(i);
            return NO_ERROR;
        }
    }
    return ERROR_NOT_CONNECTED;
}
