#pragma once

#include "files/filesystemform.h"
#include "files/places.h"

#include <QFileInfo>
#include <QIcon>
#include <QPersistentModelIndex>
#include <QWidget>

#include <memory>

class FileIconProvider;
class FileModel;
class QAction;
class QAbstractItemView;
class QMenu;
class QPushButton;
class QStandardItemModel;
class RemoteClientManager;

// The file manager, a page of the shell: the places on the left, the folder as a list or as large icons, and
// the operations on the item that is selected. It opens nothing itself: it tells which file the user chose.
// Created and owned by the task bar. GUI thread.
//
// The file model is made anew on every click on a place and every step up; an index into it lives no longer.
class FileSystemWidget : public QWidget
{
    Q_OBJECT

public:
    // Four seconds later the client's drives are looked for, unless `noDriveManager`. Without a start path
    // the home folder is shown.
    FileSystemWidget(QWidget* parent, bool noDriveManager, const QString& startPath);
    ~FileSystemWidget() override;

    // Shares the width between places and folder; once the screen is known.
    void adjustLayout();

signals:
    // A file was chosen to be opened, with this application or, when it is null, with the one registered for
    // it.
    void openFile(QString path, QString application = QString());

public slots:
    // Gives the client's drives back, then closes the widget. Nothing more happens the second time.
    void close();

    // --- Browsing
    void setMenu();
    void setNoSelectionMenu();
    void directoryLoaded(const QString& dir);
    // The place where the user asked for a menu, in the coordinates of the view in sight.
    void menuRequested(const QPoint& pos);
    // Enters a folder.
    void setIndex(const QModelIndex& index);
    void upButtonPressed();
    // Opens a file or enters a folder. Wanted: a link leads home.
    void doubleClicked(const QModelIndex& index);
    void mousePressed(const QModelIndex& index);

    // --- Places
    // Wanted: the new list is not shown.
    void fillPlaces();
    void updatePlaces();
    void insertPlace(const QIcon& icon, const QString& name);
    void setPlaceIndex(const QModelIndex& index);
    void placesDoubleClicked(const QModelIndex& index);
    void setHome();

    void showMenu(const QModelIndex& index);
    void showNoSelectionMenu();

    // --- Operations on the selected item, with their questions
    void cutSlot();
    void copySlot();
    void pasteSlot();
    void removeSlot();
    void newFolderSlot();
    void renameSlot();

    // Enables what the selection and the clipboard allow.
    void setEnabledButtons();
    // Takes the selection along to the other view.
    void changeView();

    // --- Operations without questions
    void copyFile();
    void removeFile();
    void renameFile(const QString& newName);

protected:
    void showEvent(QShowEvent* event) override;
    // Who comes to the page, from the task bar or from another page, has the keyboard in its folder.
    void focusInEvent(QFocusEvent* event) override;

private:
    void setUpViews();
    void setUpShortcuts();
    void connectForm();
    void rebuildModel();
    void setSelectionHooks(bool on);
    void leaveLostFolder();
    QString nearestFolder(const QString& path) const;
    void leaveRows(const QModelIndex& parent, int first, int last);
    void enter(const QString& path);
    void clearSelections();
    QAbstractItemView* viewInSight() const;
    void enable(QPushButton* button, bool on);
    QAction* addAction(QMenu* menu, const char* text, const char* picture, const char* slot);
    // Shown as pressed no more, when a box opens over it.
    void releaseButtons();

    files::Places places() const;
    QString userFacingPath(const QString& path) const;

    QString rootPath() const;
    // The selected item's path, empty when there is none.
    QString currentPath() const;
    void removePath(const QString& path);
    void tell(const QString& title, const QString& text);
    // Asks for a name; empty when the user gave up.
    QString askForName(const QString& title, const QString& label, const QString& name);

    FileSystemForm m_form;
    FileModel* m_model = nullptr;                     // owned; replaced often
    std::unique_ptr<FileIconProvider> m_iconProvider; // every model's
    QStandardItemModel* m_places = nullptr;           // owned
    QPersistentModelIndex m_current; // what the operations act on; invalid without a selection
    QFileInfo m_clipboard;
    bool m_cut = false; // else copied
    bool m_hooked = false;
    QMenu* m_selectionMenu = nullptr;
    QMenu* m_noSelectionMenu = nullptr;
    QAction* m_renameAction = nullptr;
    QAction* m_cutAction = nullptr;
    QAction* m_copyAction = nullptr;
    QAction* m_removeAction = nullptr;
    QAction* m_newFolderAction = nullptr;
    QAction* m_pasteAction = nullptr;
    RemoteClientManager* m_drives = nullptr; // a child; null after close()
};
