#pragma once

#include <QFileSystemModel>
#include <QHash>
#include <QIcon>
#include <QSet>
#include <QStringList>
#include <QTimer>

class QFileIconProvider;

// The file manager's model of a folder. It lists folders without asking for icons: an icon is asked for, on
// the GUI thread and a few at a time, once a view has painted the entry, and is remembered until the entry
// changes. Until then a file shows the picture for files without an application. While the folder is being
// read, that comes first and icons get what time is left. GUI thread, like every model.
class FileModel : public QFileSystemModel
{
    Q_OBJECT

public:
    // `icons` stays its owner's, and must outlive the model.
    explicit FileModel(const QFileIconProvider* icons, QObject* parent = nullptr);

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private slots:
    // Looks up what was painted last, for some milliseconds.
    void lookUpIcons();
    void folderWasRead(const QString& path);
    void forget(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles);
    void forgetRows(const QModelIndex& parent, int first, int last);
    void forgetWanted();
    void forgetAll();

private:
    QVariant icon(const QModelIndex& index) const;
    void lookUpLater() const;

    const QFileIconProvider* const m_provider;
    const QIcon m_folderIcon; // made once: every paint of every entry would read the picture's file
    const QIcon m_fileIcon;
    mutable QHash<QString, QIcon> m_icons; // by path
    mutable QStringList m_wanted;          // paths, the last painted last
    mutable QTimer m_lookUp;
    QSet<QString> m_read; // folders
};
