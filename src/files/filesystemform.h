#pragma once

class ElidedLabel;
class QFrame;
class QLineEdit;
class QListView;
class QPushButton;
class QSplitter;
class QTreeView;
class QWidget;

// The file manager's widgets, laid out and named: the tool row above, the places on the left, the folder as a
// list or as large icons, a line of text below. They belong to the widget that they are set up in, which
// connects them.
struct FileSystemForm
{
    QPushButton* upButton = nullptr;
    QLineEdit* addressLineEdit = nullptr;
    QPushButton* renameButton = nullptr;
    QPushButton* newFolderButton = nullptr;
    QPushButton* cutButton = nullptr;
    QPushButton* copyButton = nullptr;
    QPushButton* pasteButton = nullptr;
    QPushButton* removeButton = nullptr;
    QFrame* line = nullptr;
    QPushButton* listViewButton = nullptr;
    QPushButton* iconViewButton = nullptr;
    QSplitter* splitter = nullptr;
    QListView* placesView = nullptr;
    QWidget* verticalLayoutWidget = nullptr;
    QTreeView* listView = nullptr;
    QListView* iconView = nullptr;
    ElidedLabel* fileInfo = nullptr;

    void setUp(QWidget* widget);
};
