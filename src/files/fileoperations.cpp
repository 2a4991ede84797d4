#include "files/fileoperations.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

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

bool isFolder(const QFileInfo& info)
{
    return info.isDir() && !isShortcut(info);
}

// A folder that is emptied or descended into; links are neither.
bool isRealFolder(const QFileInfo& info)
{
    return info.isDir() && !isLink(info);
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
        const bool succeeded =
            isFolder(QFileInfo(source)) ? copyFolder(source, target) : copySingle(source, target);
        m_progress->endEntry();
        return succeeded;
    }

    // Folders that others put something into meanwhile stay.
    void undo()
    {
        while (!m_written.isEmpty()) {
            const QString path = m_written.takeLast();
            if (isRealFolder(QFileInfo(path)))
                QDir().rmdir(path);
            else
                QFile::remove(path);
        }
    }

private:
    bool copySingle(const QString& source, const QString& target)
    {
        if (!copyFile(source, target))
            return false;
        m_written.append(target);
        return true;
    }

    bool copyFolder(const QString& source, const QString& target)
    {
        const QString place = canonicalPath(source);
        if (m_open.contains(place, pathCase) || isObscure(source))
            return true;
        QDir parent(target);
        if (!parent.cdUp() || !parent.mkdir(QFileInfo(target).fileName()))
            return false;
        m_written.append(target);
        if (m_open.isEmpty())
            m_open.append(canonicalPath(target));
        m_open.append(place);
        const QStringList names = entries(source);
        bool succeeded = true;
        for (auto name = names.begin(); succeeded && name != names.end(); ++name)
            succeeded = copy(entryPath(source, *name), entryPath(target, *name));
        m_open.removeLast();
        return succeeded;
    }

    Progress* const m_progress;
    QStringList m_open;    // the target, and the folders from the source down to where we are
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
    return !path.isEmpty() && isFolder(QFileInfo(path));
}

bool isWithin(const QString& path, const QString& folder)
{
    const QString inner = canonicalPath(path);
    QString outer = canonicalPath(folder);
    if (inner.isEmpty() || outer.isEmpty())
        return false;
    if (inner.compare(outer, pathCase) == 0)
        return true;
    if (!outer.endsWith(QLatin1Char('/')))
        outer += QLatin1Char('/');
    return inner.startsWith(outer, pathCase);
}

int countEntries(const QString& path)
{
    int count = 1;
    if (path.isEmpty() || !isRealFolder(QFileInfo(path)))
        return count;
    const QStringList names = entries(path);
    for (const QString& name : names)
        count += countEntries(entryPath(path, name));
    return count;
}

// --- Copies

bool copyFile(const QString& source, const QString& target)
{
    return !source.isEmpty() && !target.isEmpty() && QFile::copy(source, target);
}

bool copyTree(const QString& source, const QString& target, Progress* progress)
{
    if (source.isEmpty() || target.isEmpty())
        return false;
    progress->begin(countEntries(source));
    TreeCopy copy(progress);
    const bool succeeded = copy.copy(source, target);
    if (!succeeded && progress->isCancelled())
        copy.undo();
    return succeeded;
}

// --- Removals

namespace {

bool removeSingle(const QString& path, const QFileInfo& info)
{
    if (QFile::remove(path))
        return true;
    if (isLink(info))
        return QDir().rmdir(path); // to Windows, a link to a folder is one
    // Windows removes no file that is read-only.
    return QFile::setPermissions(path, QFile::permissions(path) | QFile::WriteUser) && QFile::remove(path);
}

bool removeEntry(const QString& path, Progress* progress)
{
    progress->beginEntry(path);
    const QFileInfo info(path);
    bool removed = true;
    if (isRealFolder(info)) {
        const QStringList names = entries(path);
        for (const QString& name : names)
            removed = removeEntry(entryPath(path, name), progress) && removed;
        removed = removed && QDir().rmdir(path);
    } else {
        removed = removeSingle(path, info);
    }
    progress->endEntry();
    return removed;
}

} // namespace

bool removeTree(const QString& path, Progress* progress)
{
    if (path.isEmpty())
        return false;
    progress->begin(countEntries(path));
    return removeEntry(path, progress);
}

} // namespace files
