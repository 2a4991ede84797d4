#include "files/filesystemwidget.h"

#include "files/fileiconprovider.h"
#include "files/filemodel.h"
#include "files/fileoperations.h"
#include "files/icondelegate.h"
#include "shell/elidedlabel.h"
#include "winapi/remoteclientmanager.h"

#include <QAction>
#include <QDir>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QStandardItemModel>
#include <QTimer>
#include <QTreeView>

namespace {

constexpr int driveScanDelay = 4000; // ms
constexpr int placesStretch = 1;
constexpr int folderStretch = 4;
const QSize placeIconSize(64, 64); // pixels
const QSize listIconSize(22, 22);
const QSize gridIconSize(64, 64);
const QSize gridSize(128, 128);

QIcon menuPicture(const char* name)
{
    return QIcon(QStringLiteral(":/icons/32x32") + QDir::separator() + QLatin1String(name));
}

} // namespace

FileSystemWidget::FileSystemWidget(QWidget* parent, bool noDriveManager, const QString& startPath)
    : QWidget(parent)
    , m_drives(new RemoteClientManager(this))
{
    m_form.setUp(this);
    if (!noDriveManager) {
        QTimer::singleShot(driveScanDelay, m_drives, SLOT(start()));
        connect(m_drives, SIGNAL(update()), this, SLOT(updatePlaces()));
    }
    m_places = new QStandardItemModel(this);
    updatePlaces();
    m_selectionMenu = new QMenu(this);
    m_noSelectionMenu = new QMenu(this);
    setMenu();
    setNoSelectionMenu();
    m_form.placesView->setModel(m_places);
    m_form.placesView->setIconSize(placeIconSize);
    rebuildModel();
    setUpViews();
    if (startPath.isEmpty())
        setHome();
    else
        enter(startPath);
    m_form.listView->hide();
    m_form.addressLineEdit->setReadOnly(true);
    QFont bold = m_form.addressLineEdit->font();
    bold.setWeight(QFont::Bold); // 75
    m_form.addressLineEdit->setFont(bold);
    m_form.addressLineEdit->addAction(menuPicture("folder-docs.png"), QLineEdit::LeadingPosition);
    connectForm();
    setUpShortcuts();
    setEnabledButtons();
}

FileSystemWidget::~FileSystemWidget()
{
    delete m_model; // before the provider
}

void FileSystemWidget::setUpViews()
{
    m_form.listView->setItemsExpandable(false);
    m_form.listView->setIconSize(listIconSize);
    m_form.listView->setStyleSheet(
        QStringLiteral("QTreeView::branch { border-image: url(nonexistent.png); }"));
    m_form.listView->setUniformRowHeights(true); // else every row's icon would be asked for
    m_form.listView->header()->setSortIndicator(0, Qt::AscendingOrder);
    m_form.listView->setSortingEnabled(true);
    m_form.iconView->setViewMode(QListView::IconMode);
    m_form.iconView->setIconSize(gridIconSize);
    m_form.iconView->setGridSize(gridSize);
    m_form.iconView->setResizeMode(QListView::Adjust);
    m_form.iconView->setMovement(QListView::Snap);
    m_form.iconView->setWordWrap(true); // long names differ at their ends
    m_form.iconView->setItemDelegate(new IconDelegate(gridSize, m_form.iconView));
}

void FileSystemWidget::connectForm()
{
    const FileSystemForm& f = m_form;
    connect(f.iconViewButton, SIGNAL(pressed()), f.iconView, SLOT(show()));
    connect(f.iconViewButton, SIGNAL(pressed()), f.listView, SLOT(hide()));
    connect(f.iconViewButton, SIGNAL(pressed()), this, SLOT(setEnabledButtons()));
    connect(f.iconViewButton, SIGNAL(pressed()), this, SLOT(changeView()));
    // What is selected out of sight would be acted on later.
    connect(f.iconViewButton, SIGNAL(pressed()), f.listView, SLOT(clearSelection()));
    connect(f.iconViewButton, SIGNAL(pressed()), f.iconView, SLOT(setFocus()));
    connect(f.listViewButton, SIGNAL(pressed()), f.listView, SLOT(show()));
    connect(f.listViewButton, SIGNAL(pressed()), f.iconView, SLOT(hide()));
    connect(f.listViewButton, SIGNAL(pressed()), this, SLOT(setEnabledButtons()));
    connect(f.listViewButton, SIGNAL(pressed()), this, SLOT(changeView()));
    connect(f.listViewButton, SIGNAL(pressed()), f.iconView, SLOT(clearSelection()));
    connect(f.listViewButton, SIGNAL(pressed()), f.listView, SLOT(setFocus()));
    connect(f.upButton, SIGNAL(pressed()), this, SLOT(upButtonPressed()));
    for (QAbstractItemView* const view :
         {static_cast<QAbstractItemView*>(f.listView), static_cast<QAbstractItemView*>(f.iconView)}) {
        connect(view, SIGNAL(doubleClicked(QModelIndex)), this, SLOT(doubleClicked(QModelIndex)));
        connect(view, SIGNAL(pressed(QModelIndex)), this, SLOT(mousePressed(QModelIndex)));
        view->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(view, SIGNAL(customContextMenuRequested(QPoint)), this, SLOT(menuRequested(QPoint)));
    }
    connect(f.placesView, SIGNAL(doubleClicked(QModelIndex)), this, SLOT(placesDoubleClicked(QModelIndex)));
    connect(f.placesView, SIGNAL(clicked(QModelIndex)), this, SLOT(placesDoubleClicked(QModelIndex)));
    connect(f.renameButton, SIGNAL(pressed()), this, SLOT(renameSlot()));
    connect(f.newFolderButton, SIGNAL(pressed()), this, SLOT(newFolderSlot()));
    connect(f.cutButton, SIGNAL(pressed()), this, SLOT(cutSlot()));
    connect(f.copyButton, SIGNAL(pressed()), this, SLOT(copySlot()));
    connect(f.pasteButton, SIGNAL(pressed()), this, SLOT(pasteSlot()));
    connect(f.removeButton, SIGNAL(pressed()), this, SLOT(removeSlot()));
}

void FileSystemWidget::adjustLayout()
{
    m_form.splitter->setStretchFactor(0, placesStretch);
    m_form.splitter->setStretchFactor(1, folderStretch);
    m_form.listView->setColumnWidth(0, QGuiApplication::primaryScreen()->geometry().width() / 3);
}

void FileSystemWidget::close()
{
    if (m_drives) {
        m_drives->stop();
        delete m_drives;
        m_drives = nullptr;
    }
    QWidget::close();
}

// --- The model

void FileSystemWidget::rebuildModel()
{
    if (m_model) {
        disconnect(m_model, SIGNAL(directoryLoaded(QString)), this, SLOT(directoryLoaded(QString)));
        setSelectionHooks(false);
    } else {
        m_iconProvider = std::make_unique<FileIconProvider>();
    }
    FileModel* const old = m_model;
    m_model = new FileModel(m_iconProvider.get()); // ours
    m_model->setResolveSymlinks(false);
    // Before the views hear of it, which would select another item.
    connect(m_model, &FileModel::rowsAboutToBeRemoved, this, &FileSystemWidget::leaveRows);
    // After the model has done: it is replaced.
    connect(m_model, &FileModel::rowsRemoved, this, &FileSystemWidget::leaveLostFolder, Qt::QueuedConnection);
    m_form.listView->setModel(m_model);
    m_form.iconView->setModel(m_model);
    m_form.listView->reset();
    m_form.iconView->reset();
    delete old;
    connect(m_model, SIGNAL(directoryLoaded(QString)), this, SLOT(directoryLoaded(QString)));
    setSelectionHooks(true);
    setEnabledButtons();
}

void FileSystemWidget::setSelectionHooks(bool on)
{
    if (on == m_hooked) // never connected twice
        return;
    m_hooked = on;
    for (const QAbstractItemView* const view : {static_cast<const QAbstractItemView*>(m_form.listView),
                                                static_cast<const QAbstractItemView*>(m_form.iconView)}) {
        const QItemSelectionModel* const selection = view->selectionModel();
        if (on) {
            connect(m_model, SIGNAL(rootPathChanged(QString)), selection, SLOT(clearSelection()));
            connect(selection, SIGNAL(selectionChanged(QItemSelection, QItemSelection)), this,
                    SLOT(setEnabledButtons()));
        } else {
            disconnect(m_model, SIGNAL(rootPathChanged(QString)), selection, SLOT(clearSelection()));
            disconnect(selection, SIGNAL(selectionChanged(QItemSelection, QItemSelection)), this,
                       SLOT(setEnabledButtons()));
        }
    }
}

QString FileSystemWidget::rootPath() const
{
    return m_model->rootPath();
}

QString FileSystemWidget::currentPath() const
{
    return m_current.isValid() ? m_model->filePath(m_current) : QString();
}

// --- Browsing

void FileSystemWidget::enter(const QString& path)
{
    setIndex(m_model->index(path));
}

void FileSystemWidget::setIndex(const QModelIndex& index)
{
    if (!index.isValid()) // a folder that is gone: the model would show every drive
        return;
    clearSelections();
    setSelectionHooks(false);
    setEnabledButtons(); // nobody else tells that nothing is selected any more
    const QString path = m_model->filePath(index);
    const QString shown = userFacingPath(path);
    m_form.fileInfo->setText(tr("Loading folder %1...").arg(shown));
    const bool isShown = m_model->rootPath() == path;
    m_model->setRootPath(path);
    for (QAbstractItemView* const view : {static_cast<QAbstractItemView*>(m_form.listView),
                                          static_cast<QAbstractItemView*>(m_form.iconView)}) {
        view->setRootIndex(index);
        if (view->currentIndex().parent() != index)
            view->selectionModel()->clearCurrentIndex(); // else keys go on in the folder that was left
    }
    m_form.addressLineEdit->setText(shown);
    if (isShown) // the model says nothing of a folder that it has
        directoryLoaded(path);
}

void FileSystemWidget::directoryLoaded(const QString& dir)
{
    setSelectionHooks(true);
    setEnabledButtons(); // something may have been selected meanwhile
    m_form.fileInfo->setText(tr("Finished loading folder %1").arg(userFacingPath(dir)));
}

void FileSystemWidget::doubleClicked(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const QString path = m_model->filePath(index);
    const QFileInfo info(path);
    if (info.isSymLink())
        setHome();
    else if (info.isDir())
        setIndex(m_model->index(path));
    else if (info.isFile())
        emit openFile(path, QString());
}

void FileSystemWidget::upButtonPressed()
{
    const QString root = rootPath();
    const QString parent = QFileInfo(root).path();
    if (parent == root || !files::mayGoUp(root, places()))
        return;
    rebuildModel();
    enter(nearestFolder(parent));
}

// The folder, or what is left above it; not above what the up button stops at.
QString FileSystemWidget::nearestFolder(const QString& path) const
{
    const files::Places known = places();
    QString folder = path;
    while (!QFileInfo(folder).isDir()) {
        const QString parent = QFileInfo(folder).path();
        if (parent == folder || !files::mayGoUp(folder, known))
            return QDir::homePath();
        folder = parent;
    }
    return folder;
}

// The views would show every drive.
void FileSystemWidget::leaveLostFolder()
{
    if (m_form.iconView->rootIndex().isValid())
        return;
    const QString shown = rootPath();
    rebuildModel();
    enter(nearestFolder(shown));
}

void FileSystemWidget::clearSelections()
{
    m_form.listView->clearSelection();
    m_form.iconView->clearSelection();
}

QAbstractItemView* FileSystemWidget::viewInSight() const
{
    if (m_form.listView->isVisible())
        return m_form.listView;
    return m_form.iconView;
}

void FileSystemWidget::setEnabledButtons()
{
    const bool canPaste = !m_clipboard.absolutePath().isEmpty();
    m_pasteAction->setEnabled(canPaste);
    enable(m_form.pasteButton, canPaste);
    const bool isList = m_form.listView->isVisible();
    m_form.listViewButton->setEnabled(!isList);
    m_form.iconViewButton->setEnabled(isList);

    const QModelIndexList listed = m_form.listView->selectionModel()->selectedIndexes();
    const QModelIndexList shown = m_form.iconView->selectionModel()->selectedIndexes();
    m_current = listed.isEmpty() ? shown.value(0) : listed.first();
    const bool isSelected = m_current.isValid();
    for (QAction* const action : {m_renameAction, m_copyAction, m_cutAction, m_removeAction})
        action->setEnabled(isSelected);
    for (QPushButton* const button :
         {m_form.renameButton, m_form.copyButton, m_form.cutButton, m_form.removeButton})
        enable(button, isSelected);
}

void FileSystemWidget::changeView()
{
    QItemSelectionModel* const list = m_form.listView->selectionModel();
    QItemSelectionModel* const icons = m_form.iconView->selectionModel();
    if (list->hasSelection())
        icons->select(list->selection(), QItemSelectionModel::ClearAndSelect);
    else
        list->select(icons->selection(), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

// --- Menus

QAction* FileSystemWidget::addAction(QMenu* menu, const char* text, const char* picture, const char* slot)
{
    QAction* const action = menu->addAction(menuPicture(picture), tr(text));
    connect(action, SIGNAL(triggered()), this, slot);
    return action;
}

void FileSystemWidget::setMenu()
{
    m_renameAction = addAction(m_selectionMenu, QT_TR_NOOP("&Rename"), "rename.png", SLOT(renameSlot()));
    m_cutAction = addAction(m_selectionMenu, QT_TR_NOOP("Cu&t"), "cut.png", SLOT(cutSlot()));
    m_copyAction = addAction(m_selectionMenu, QT_TR_NOOP("&Copy"), "copy.png", SLOT(copySlot()));
    m_removeAction = addAction(m_selectionMenu, QT_TR_NOOP("&Delete"), "remove.png", SLOT(removeSlot()));
}

void FileSystemWidget::setNoSelectionMenu()
{
    m_newFolderAction =
        addAction(m_noSelectionMenu, QT_TR_NOOP("&New folder"), "folder-new.png", SLOT(newFolderSlot()));
    m_pasteAction = addAction(m_noSelectionMenu, QT_TR_NOOP("&Paste"), "paste.png", SLOT(pasteSlot()));
}

void FileSystemWidget::mousePressed(const QModelIndex& index)
{
    if (QGuiApplication::mouseButtons() == Qt::RightButton)
        showMenu(index);
}

void FileSystemWidget::menuRequested(const QPoint& pos)
{
    if (!viewInSight()->indexAt(pos).isValid())
        showNoSelectionMenu();
}

void FileSystemWidget::showMenu(const QModelIndex&)
{
    m_selectionMenu->exec(QCursor::pos());
}

void FileSystemWidget::showNoSelectionMenu()
{
    m_noSelectionMenu->exec(QCursor::pos());
}
