#include "files/fileoperations.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>
#include <QStringList>

namespace files {

namespace {

const QDir::Filters everything =
    QDir::Dirs | QDir::Files | QDir::Hidden | QDir::System | QDir::NoDot | QDir::NoDotDot;

#ifdef Q_OS_WIN
constexpr Qt::CaseSensitivity pathCase = Qt::CaseInsensitive;
#else
constexpr Qt::CaseSensitivity pathCase = Qt::CaseSensitive;
#endif

bool isJunction(const QFileInfo& info)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 15, 0)
    return info.isJunction();
#else
    Q_UNUSED(info) // a link like others, for earlier versions of Qt
    return false;
#endif
}

QString canonicalPath(const QString& path)
{
    return QFileInfo(path).canonicalFilePath();
}

// What the canonical paths of a folder's entries begin with.
QString beginningWithin(const QString& folder)
{
    return folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

// Both canonical.
bool isSameOrBelow(const QString& path, const QString& folder)
{
    if (path.isEmpty() || folder.isEmpty())
        return false;
    return path.compare(folder, pathCase) == 0 || path.startsWith(beginningWithin(folder), pathCase);
}

// Whether it leads nobody knows where: following it might never end.
bool isObscure(const QString& path)
{
    const QFileInfo info(path);
    return isJunction(info) &&
           info.canonicalFilePath().compare(QDir::cleanPath(info.absoluteFilePath()), pathCase) == 0;
}

QStringList entries(const QString& folder)
{
    return QDir(folder).entryList(everything, QDir::Unsorted);
}

// A file that Qt takes for a link.
bool isShortcut(const QFileInfo& info)
{
#ifdef Q_OS_WIN
    return info.isSymLink() && info.fileName().endsWith(QLatin1String(".lnk"), Qt::CaseInsensitive);
#else
    Q_UNUSED(info)
    return false;
#endif
}

// A folder that is emptied or descended into; links are neither.
bool isRealFolder(const QFileInfo& info)
{
    return info.isDir() && !isLink(info);
}

int countEntries(const QFileInfo& entry, const Progress& progress)
{
    if (!isRealFolder(entry) || progress.isCancelled())
        return 1;
    int count = 1;
    const QFileInfoList infos = QDir(entry.filePath()).entryInfoList(everything, QDir::Unsorted);
    for (const QFileInfo& info : infos)
        count += countEntries(info, progress);
    return count;
}

// To Windows, a link to a folder is one.
bool removeEmptied(const QString& path, const QFileInfo& info)
{
    return (!isRealFolder(info) && QFile::remove(path)) || QDir().rmdir(path);
}

// Removes a file, a link or an empty folder.
bool removeSingle(const QString& path)
{
    const QFileInfo info(path);
    bool removed = removeEmptied(path, info);
#ifdef Q_OS_WIN
    // Nothing that is read-only is removed there.
    const QFile::Permissions permissions = QFile::permissions(path);
    if (!removed && QFile::setPermissions(path, permissions | QFile::WriteUser)) {
        removed = removeEmptied(path, info);
        if (!removed)
            QFile::setPermissions(path, permissions);
    }
#endif
    return removed;
}

// One copy, from its start to its end.
class TreeCopy
{
public:
    explicit TreeCopy(Progress* progress)
        : m_progress(progress)
    {}

    bool copy(const QString& source, const QString& target)
    {
        if (m_progress->isCancelled())
            return false;
        m_progress->beginEntry(source);
        const bool succeeded = isFolder(source) ? copyFolder(source, target) : copySingle(source, target);
        m_progress->endEntry();
        return succeeded;
    }

    // Folders that others put something into meanwhile stay.
    void undo()
    {
        while (!m_written.isEmpty())
            removeSingle(m_written.takeLast());
    }

private:
    // Its canonical path. Within a folder only links need to be asked for it.
    QString placeOf(const QFileInfo& folder) const
    {
        if (m_open.isEmpty() || isLink(folder))
            return folder.canonicalFilePath();
        return beginningWithin(m_open.last()) + folder.fileName();
    }

    bool copySingle(const QString& source, const QString& target)
    {
        if (!copyFile(source, target))
            return false;
        m_written.append(target);
        return true;
    }

    bool copyFolder(const QString& source, const QString& target)
    {
        const QString place = placeOf(QFileInfo(source));
        if (m_open.contains(place, pathCase) || isSameOrBelow(place, m_target) || isObscure(source))
            return true;
        if (!QDir().mkdir(target))
            return false;
        m_written.append(target);
        if (m_target.isEmpty())
            m_target = canonicalPath(target);
        m_open.append(place);
        const QStringList names = entries(source);
        bool succeeded = true;
        for (auto name = names.begin(); succeeded && name != names.end(); ++name)
            succeeded = copy(entryPath(source, *name), entryPath(target, *name));
        m_open.removeLast();
        return succeeded;
    }

    Progress* const m_progress;
    QString m_target;      // the topmost folder written, canonical
    QStringList m_open;    // the folders from the source down to where we are, canonical
    QStringList m_written; // in order
};

} // namespace

// --- Progress

void Progress::begin(int total)
{
    const QMutexLocker locker(&m_lock);
    m_state = State();
    m_state.total = total;
}

void Progress::beginEntry(const QString& path)
{
    const QMutexLocker locker(&m_lock);
    m_state.path = path;
}

void Progress::endEntry()
{
    const QMutexLocker locker(&m_lock);
    ++m_state.done;
}

Progress::State Progress::state() const
{
    const QMutexLocker locker(&m_lock);
    return m_state;
}

void Progress::cancel()
{
    const QMutexLocker locker(&m_lock);
    m_cancelled = true;
}

bool Progress::isCancelled() const
{
    const QMutexLocker locker(&m_lock);
    return m_cancelled;
}

// --- Paths

QString entryPath(const QString& folder, const QString& name)
{
    return folder + QDir::separator() + name;
}

bool isLink(const QFileInfo& info)
{
    return info.isSymLink() || isJunction(info);
}

bool isFolder(const QString& path)
{
    const QFileInfo info(path);
    return isReachable(path) && info.isDir() && !isShortcut(info);
}

bool isWithin(const QString& path, const QString& folder)
{
    return isSameOrBelow(canonicalPath(path), canonicalPath(folder));
}

bool isReachable(const QString& path)
{
    if (path.isEmpty())
        return false;
#ifdef Q_OS_WIN
    // Windows takes dots and blanks off the end of a name; Qt gives one blank back.
    const QStringList names = QDir::fromNativeSeparators(path).split(QLatin1Char('/'));
    for (const QString& name : names) {
        const QString rest = name.endsWith(QLatin1Char(' ')) ? name.left(name.size() - 1) : name;
        if (rest.endsWith(QLatin1Char(' ')) || rest.endsWith(QLatin1Char('.')))
            return false;
    }
#endif
    return true;
}

// --- Copies

bool copyFile(const QString& source, const QString& target)
{
    return isReachable(source) && isReachable(target) && QFile::copy(source, target);
}

bool copyTree(const QString& source, const QString& target, Progress* progress)
{
    if (!isReachable(source) || !isReachable(target))
        return false;
    progress->begin(countEntries(QFileInfo(source), *progress));
    TreeCopy copy(progress);
    const bool succeeded = copy.copy(source, target);
    if (!succeeded && progress->isCancelled())
        copy.undo();
    return succeeded;
}

// --- Removals

namespace {

bool removeEntry(const QString& path, Progress* progress)
{
    // Windows would take another one for it.
    if (!isReachable(path))
        return false;
    progress->beginEntry(path);
    if (isRealFolder(QFileInfo(path))) {
        const QStringList names = entries(path);
        for (const QString& name : names)
            removeEntry(entryPath(path, name), progress);
    }
    const bool removed = removeSingle(path); // a folder only when it is empty
    progress->endEntry();
    return removed;
}

} // namespace

bool removeTree(const QString& path, Progress* progress)
{
    if (!isReachable(path))
        return false;
    progress->begin(countEntries(QFileInfo(path), *progress));
    return removeEntry(path, progress);
}

} // namespace files
