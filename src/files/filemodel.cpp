#include "files/filemodel.h"

#include <QElapsedTimer>
#include <QFileIconProvider>

namespace {

constexpr int lookUpTime = 20;    // ms, between two rounds of the event loop
constexpr int readingTime = 250;  // ms, between two looks while the folder is being read
constexpr int wantedLimit = 1000; // more than any screen shows

// What the model beneath is given, which asks it on any of its threads.
class NoIcons : public QFileIconProvider
{
public:
    QIcon icon(IconType) const override { return QIcon(); }
    QIcon icon(const QFileInfo&) const override { return QIcon(); }
};

QFileIconProvider* noIcons()
{
    static NoIcons provider; // outlives every model
    return &provider;
}

} // namespace

FileModel::FileModel(const QFileIconProvider* icons, QObject* parent)
    : QFileSystemModel(parent)
    , m_provider(icons)
    , m_folderIcon(icons->icon(QFileIconProvider::Folder))
    , m_fileIcon(icons->icon(QFileIconProvider::File))
{
    setIconProvider(noIcons());
    m_lookUp.setSingleShot(true);
    // Queued: the model beneath sorts in the same way, and comes first.
    connect(&m_lookUp, SIGNAL(timeout()), this, SLOT(lookUpIcons()), Qt::QueuedConnection);
    connect(this, SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)), this,
            SLOT(forget(QModelIndex, QModelIndex, QVector<int>)));
    connect(this, SIGNAL(rowsAboutToBeRemoved(QModelIndex, int, int)), this,
            SLOT(forgetRows(QModelIndex, int, int)));
    connect(this, SIGNAL(rootPathChanged(QString)), this, SLOT(forgetAll()));
    connect(this, SIGNAL(layoutChanged()), this, SLOT(forgetWanted()));
    connect(this, SIGNAL(directoryLoaded(QString)), this, SLOT(folderWasRead(QString)));
}

QVariant FileModel::data(const QModelIndex& index, int role) const
{
    if (role == Qt::DecorationRole && index.isValid() && index.column() == 0)
        return icon(index);
    return QFileSystemModel::data(index, role);
}

QVariant FileModel::icon(const QModelIndex& index) const
{
    if (isDir(index))
        return m_folderIcon;
    const QString path = filePath(index);
    const auto known = m_icons.constFind(path);
    if (known != m_icons.constEnd())
        return *known;
    m_wanted.removeOne(path);
    m_wanted.append(path);
    if (m_wanted.size() > wantedLimit)
        m_wanted.removeFirst(); // painting it again asks again
    if (!m_lookUp.isActive())
        lookUpLater();
    return m_fileIcon;
}

void FileModel::lookUpIcons()
{
    QElapsedTimer time;
    time.start();
    while (!m_wanted.isEmpty() && time.elapsed() < lookUpTime) {
        const QString path = m_wanted.takeLast();
        const QModelIndex entry = index(path);
        if (!entry.isValid() || isDir(entry))
            continue;
        m_icons.insert(path, m_provider->icon(fileInfo(entry)));
        emit dataChanged(entry, entry, {Qt::DecorationRole});
    }
    if (!m_wanted.isEmpty())
        lookUpLater();
}

// What is in view now may not be when the folder has been read and sorted.
void FileModel::lookUpLater() const
{
    m_lookUp.start(m_read.contains(rootPath()) ? 0 : readingTime);
}

void FileModel::folderWasRead(const QString& path)
{
    m_read.insert(path);
    if (m_lookUp.isActive())
        lookUpLater();
}

void FileModel::forget(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles)
{
    if (m_icons.isEmpty() || roles == QVector<int>{Qt::DecorationRole}) // an icon that was just found
        return;
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row)
        m_icons.remove(filePath(topLeft.sibling(row, 0)));
}

void FileModel::forgetRows(const QModelIndex& parent, int first, int last)
{
    if (!m_icons.isEmpty())
        forget(index(first, 0, parent), index(last, 0, parent), {});
}

// After sorting, views paint everything anew, and ask again for what is in view then.
void FileModel::forgetWanted()
{
    m_wanted.clear();
}

void FileModel::forgetAll()
{
    m_icons.clear();
    m_wanted.clear();
}
