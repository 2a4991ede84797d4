#include "files/filesystemform.h"

#include "shell/elidedlabel.h"
#include "shell/ownwindow.h"

#include <QCoreApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

constexpr int buttonSize = 48;     // pixels
constexpr int buttonIconSize = 40; // pixels
constexpr int addressHeight = 28;  // pixels

// The file manager's texts stand in one context.
QString text(const char* source)
{
    return QCoreApplication::translate("FileSystemWidget", source);
}

QPushButton* createButton(QWidget* parent, QLayout* row, const char* name, const char* picture)
{
    auto* const button = new QPushButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setIcon(QIcon(QStringLiteral(":/icons/48x48/%1.png").arg(QLatin1String(picture))));
    button->setIconSize(QSize(buttonIconSize, buttonIconSize));
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    button->setFlat(true);
    button->setFocusPolicy(Qt::TabFocus); // the mouse leaves the keyboard where it is
    row->addWidget(button);
    return button;
}

void setName(QPushButton* button, const QString& name)
{
    button->setToolTip(name);
    button->setAccessibleName(name);
}

} // namespace

void FileSystemForm::setUp(QWidget* widget)
{
    auto* const outer = new QVBoxLayout(widget);
    outer->setObjectName(QStringLiteral("verticalLayout_2"));
    auto* const row = new QHBoxLayout;
    row->setObjectName(QStringLiteral("horizontalLayout"));
    outer->addLayout(row);

    upButton = createButton(widget, row, "upButton", "up");
    upButton->setFixedSize(buttonSize, buttonSize);
    addressLineEdit = new QLineEdit(widget);
    addressLineEdit->setObjectName(QStringLiteral("addressLineEdit"));
    addressLineEdit->setFixedHeight(addressHeight);
    row->addWidget(addressLineEdit);
    renameButton = createButton(widget, row, "renameButton", "rename");
    newFolderButton = createButton(widget, row, "newFolderButton", "folder-new");
    cutButton = createButton(widget, row, "cutButton", "cut");
    copyButton = createButton(widget, row, "copyButton", "copy");
    pasteButton = createButton(widget, row, "pasteButton", "paste");
    removeButton = createButton(widget, row, "removeButton", "remove");
    line = new QFrame(widget);
    line->setObjectName(QStringLiteral("line"));
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    row->addWidget(line);
    listViewButton = createButton(widget, row, "listViewButton", "list-view");
    listViewButton->setFixedSize(buttonSize, buttonSize);
    iconViewButton = createButton(widget, row, "iconViewButton", "icon-view");
    iconViewButton->setFixedSize(buttonSize, buttonSize);

    splitter = new QSplitter(widget);
    splitter->setObjectName(QStringLiteral("splitter"));
    outer->addWidget(splitter, 1);
    placesView = new QListView(splitter);
    placesView->setObjectName(QStringLiteral("placesView"));
    verticalLayoutWidget = new QWidget(splitter);
    verticalLayoutWidget->setObjectName(QStringLiteral("verticalLayoutWidget"));
    auto* const folder = new QVBoxLayout(verticalLayoutWidget);
    folder->setObjectName(QStringLiteral("verticalLayout"));
    folder->setContentsMargins(0, 0, 0, 0);
    listView = new QTreeView(verticalLayoutWidget);
    listView->setObjectName(QStringLiteral("listView"));
    folder->addWidget(listView);
    iconView = new QListView(verticalLayoutWidget);
    iconView->setObjectName(QStringLiteral("iconView"));
    folder->addWidget(iconView);
    fileInfo = new ElidedLabel(verticalLayoutWidget);
    fileInfo->setObjectName(QStringLiteral("fileInfo"));
    folder->addWidget(fileInfo);

    widget->setWindowTitle(text(shell::ownWindowTitle));
    upButton->setAccessibleName(text(QT_TRANSLATE_NOOP("FileSystemWidget", "Up")));
    setName(renameButton, text(QT_TRANSLATE_NOOP("FileSystemWidget", "Rename")));
    setName(newFolderButton, text(QT_TRANSLATE_NOOP("FileSystemWidget", "New folder")));
    setName(cutButton, text(QT_TRANSLATE_NOOP("FileSystemWidget", "Cut")));
    setName(copyButton, text(QT_TRANSLATE_NOOP("FileSystemWidget", "Copy")));
    setName(pasteButton, text(QT_TRANSLATE_NOOP("FileSystemWidget", "Paste")));
    setName(removeButton, text(QT_TRANSLATE_NOOP("FileSystemWidget", "Delete")));
    setName(listViewButton, text(QT_TRANSLATE_NOOP("FileSystemWidget", "List view")));
    setName(iconViewButton, text(QT_TRANSLATE_NOOP("FileSystemWidget", "Icon view")));
    addressLineEdit->setAccessibleName(text(QT_TRANSLATE_NOOP("FileSystemWidget", "Folder")));
    placesView->setAccessibleName(text(QT_TRANSLATE_NOOP("FileSystemWidget", "Places")));
    listView->setAccessibleName(text(QT_TRANSLATE_NOOP("FileSystemWidget", "Files")));
    iconView->setAccessibleName(text(QT_TRANSLATE_NOOP("FileSystemWidget", "Files")));
}
