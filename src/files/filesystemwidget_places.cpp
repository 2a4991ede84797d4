// The file manager's places.
#include "files/filemodel.h"
#include "files/fileoperations.h"
#include "files/filesystemwidget.h"
#include "winapi/remoteclientmanager.h"

#include <QDir>
#include <QListView>
#include <QStandardItemModel>

namespace {

constexpr char dropboxFolder[] = "Dropbox";
constexpr char googleDriveFolder[] = "Google Drive";

QIcon picture(const char* folder, const char* name)
{
    return QIcon(QLatin1String(folder) + QDir::separator() + QLatin1String(name));
}

QString inHome(const char* folder)
{
    return files::entryPath(QDir::homePath(), QLatin1String(folder));
}

} // namespace

files::Places FileSystemWidget::places() const
{
    files::Places places;
    places.home = QDir::homePath();
    places.userName = QString::fromLocal8Bit(qgetenv("USERNAME"));
    if (m_drives) {
        places.drives = m_drives->drives();
        places.shares = m_drives->shares();
    }
    places.drivePrefix = tr("LOCAL > ");
    return places;
}

QString FileSystemWidget::userFacingPath(const QString& path) const
{
    return files::userFacingPath(path, places());
}

void FileSystemWidget::fillPlaces()
{
    m_places = new QStandardItemModel(this); // the view may still show the old one
    updatePlaces();
}

void FileSystemWidget::updatePlaces()
{
    const files::Places known = places();
    m_places->clear();
    insertPlace(picture(":/icons/64x64", "folder-home.png"), known.userName);
    for (int i = 0; i < known.drives.size(); ++i)
        insertPlace(picture(":/icons/64x64", "folder.png"), known.driveLabel(i));
    if (QFileInfo::exists(inHome(dropboxFolder)))
        insertPlace(picture(":/icons/applications", "dropbox.png"), tr("Dropbox"));
    if (QFileInfo::exists(inHome(googleDriveFolder)))
        insertPlace(picture(":/icons/applications", "google-drive.png"), tr("Google Drive"));
}

void FileSystemWidget::insertPlace(const QIcon& icon, const QString& name)
{
    auto* const item = new QStandardItem(icon, name); // the model's
    item->setEditable(false);
    QFont bold = item->font();
    bold.setWeight(QFont::Bold); // 75
    item->setFont(bold);
    m_places->appendRow(item);
}

void FileSystemWidget::placesDoubleClicked(const QModelIndex& index)
{
    const QString shown = rootPath();
    rebuildModel();
    setPlaceIndex(index);
    if (!m_form.iconView->rootIndex().isValid()) // the place is gone: what was in view comes back
        enter(nearestFolder(shown));
}

void FileSystemWidget::setPlaceIndex(const QModelIndex& index)
{
    const QStandardItem* const item = m_places->itemFromIndex(index);
    if (!item)
        return;
    const files::Places known = places();
    const QString text = item->text();
    if (text == tr("Dropbox")) {
        enter(inHome(dropboxFolder));
    } else if (text == tr("Google Drive")) {
        enter(inHome(googleDriveFolder));
    } else if (text == known.userName) {
        setHome();
    } else {
        const int drive = known.driveOfLabel(text);
        if (drive >= 0)
            enter(known.drives.at(drive));
    }
}

void FileSystemWidget::setHome()
{
    enter(QDir::homePath());
}
