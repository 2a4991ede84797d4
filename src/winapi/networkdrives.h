// Network resources and the drive letters that stand for them. Every call may block for as long as the
// network does.
#pragma once

#include <QList>
#include <QString>

#include <functional>

namespace winapi {

struct NetworkResource
{
    QString localName;  // "E:"; empty when it has no letter
    QString remoteName; // "\\tsclient\C"
};

// Goes through the connected disk resources, a page at a time, as Windows gives them out. Ends early when a
// page announces more but has nothing that has not been there before, and after 1,000 pages.
void forEachPageOfDiskResources(const std::function<void(const QList<NetworkResource>&)>& take);

// The first letter from E to Z that no drive has, with its colon; null when all are taken.
QString freeDriveLetter();

// Connects "\\tsclient\" and `share` to the free letter until the session ends, and returns the drive,
// whether or not that worked; null when no letter is free.
QString connectClientShare(const QString& share);

// Takes the letter back, even if files are open on it.
void removeDrive(const QString& drive);

} // namespace winapi
