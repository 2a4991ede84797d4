// What the file manager does to files and folders: functions that act on paths and ask nobody. They block as
// long as they take, and may run on any thread. A path is absolute, with "/" or the system's separator; one
// that is not reachable is never acted on. Links, and junctions on Windows, are never followed by a removal.
#pragma once

#include <QMutex>
#include <QString>

class QFileInfo;

namespace files {

// How far a copy or removal has come, and whether it has to stop. Written by the thread that works, read by
// another.
class Progress
{
public:
    struct State
    {
        QString path; // what it is at
        int done = 0;
        int total = 0; // entries; 0 or 1 for what cannot be counted
    };

    void begin(int total);
    void beginEntry(const QString& path);
    void endEntry();
    State state() const;

    // A copy stops before its next entry.
    void cancel();
    bool isCancelled() const;

private:
    mutable QMutex m_lock;
    State m_state;
    bool m_cancelled = false;
};

// The path of an entry of a folder, with the system's separator in between.
QString entryPath(const QString& folder, const QString& name);

// Whether the system takes the path for the one that it names. It does not take an empty one, and Windows
// takes "a." and "a  ", which other systems may have put there, for "a" and "a ".
bool isReachable(const QString& path);

// Whether the entry itself is a link: a symbolic link, a junction or a shortcut.
bool isLink(const QFileInfo& info);

// Whether it is a folder as users see it, which a link to a folder is too. As it is now.
bool isFolder(const QString& path);

// Whether `path` is `folder` or lies in it, links resolved.
bool isWithin(const QString& path, const QString& folder);

// Copies a file. Fails when the target is there.
bool copyFile(const QString& source, const QString& target);

// Copies a file, or a folder with everything in it, and stops at the first failure; what was copied by then
// stays, unless the copy was cancelled: then what was written is removed again. A link is copied as what it
// leads to; one that leads back to a folder that is being copied, or into what is being written, or a
// junction whose end is not known, is left out.
bool copyTree(const QString& source, const QString& target, Progress* progress);

// Removes a file or a link, or a folder with everything in it, and goes on where something cannot be removed.
// Returns whether all of it was removed.
bool removeTree(const QString& path, Progress* progress);

} // namespace files
