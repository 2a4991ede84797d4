#include "winapi/networkdrives.h"

#include <windows.h>

#include <winnetwk.h>

#include <QPair>
#include <QSet>
#include <QStringList>

#include <memory>

namespace winapi {

namespace {

constexpr DWORD rootsSize = 260;  // UTF-16 units
constexpr int rootSize = 4;       // of "C:\" and its terminator
constexpr DWORD pageSize = 65536; // bytes
constexpr DWORD mostEntries = pageSize / sizeof(NETRESOURCEW);
constexpr DWORD everyEntry = 0xFFFFFFFF;
// No session has this many: an enumeration that goes on is one that does not end.
constexpr int mostPages = 1000;

struct CloseEnumeration
{
    void operator()(HANDLE handle) const { WNetCloseEnum(handle); }
};
struct FreeLocal
{
    void operator()(void* memory) const { LocalFree(memory); }
};

QStringList usedRoots()
{
    WCHAR buffer[rootsSize + 1] = {}; // ends with a zero whatever comes
    const DWORD length = GetLogicalDriveStringsW(rootsSize, buffer);
    QStringList roots;
    if (length < 1 || length > rootsSize)
        return roots;
    for (DWORD at = 0; at < rootsSize && buffer[at]; at += rootSize)
        roots.append(QString::fromWCharArray(buffer + at));
    return roots;
}

// For structures that were declared without const; Windows does not write there. Lives as long as `string`.
LPWSTR writable(const QString& string)
{
    return reinterpret_cast<LPWSTR>(const_cast<ushort*>(string.utf16()));
}

QString text(LPCWSTR string)
{
    return string ? QString::fromWCharArray(string) : QString();
}

} // namespace

void forEachPageOfDiskResources(const std::function<void(const QList<NetworkResource>&)>& take)
{
    HANDLE opened = nullptr;
    WNetOpenEnumW(RESOURCE_CONNECTED, RESOURCETYPE_DISK, 0, nullptr, &opened);
    // Windows itself refuses a handle or a buffer that is null.
    const std::unique_ptr<void, CloseEnumeration> handle(opened);
    const std::unique_ptr<void, FreeLocal> buffer(LocalAlloc(LMEM_FIXED, pageSize));
    QSet<QPair<QString, QString>> seen;
    DWORD result = ERROR_MORE_DATA;
    for (int page = 0; result == ERROR_MORE_DATA && page < mostPages; ++page) {
        DWORD count = everyEntry;
        DWORD size = pageSize;
        result = WNetEnumResourceW(opened, &count, buffer.get(), &size);
        if ((result != NO_ERROR && result != ERROR_MORE_DATA) || count > mostEntries)
            break;
        const auto* const entries = static_cast<const NETRESOURCEW*>(buffer.get());
        QList<NetworkResource> resources;
        const int before = seen.size();
        for (DWORD i = 0; i < count; ++i) {
            resources.append({text(entries[i].lpLocalName), text(entries[i].lpRemoteName)});
            seen.insert({resources.last().localName, resources.last().remoteName});
        }
        if (result == ERROR_MORE_DATA && seen.size() == before)
            break; // it has begun anew
        take(resources);
    }
}

QString freeDriveLetter()
{
    const QStringList roots = usedRoots();
    for (char letter = 'E'; letter <= 'Z'; ++letter) {
        QString drive = QLatin1Char(letter) + QStringLiteral(":");
        if (!roots.contains(drive + QLatin1Char('\\')))
            return drive;
    }
    return QString();
}

QString connectClientShare(const QString& share)
{
    QString drive = freeDriveLetter();
    const QString remoteName = QLatin1String("\\\\tsclient\\") + share;
    NETRESOURCEW resource = {};
    resource.dwType = RESOURCETYPE_ANY;
    resource.lpLocalName = writable(drive);
    resource.lpRemoteName = writable(remoteName);
    qDebug("name: %s, drive: %s\n", qUtf8Printable(remoteName), qUtf8Printable(drive));
    if (WNetAddConnection2W(&resource, nullptr, nullptr, 0) != NO_ERROR) {
        qDebug("Something failed connecting %s to local drive %s", qUtf8Printable(share),
               qUtf8Printable(drive));
    }
    return drive;
}

void removeDrive(const QString& drive)
{
    qDebug("Removing drive %s", qUtf8Printable(drive));
    WNetCancelConnection2W(writable(drive), 0, TRUE);
}

} // namespace winapi
