// The file manager: its form, its views and menus.
#include "files/icondelegate.h"
#include "shell/ownwindow.h"
#include "support/filemanagertest.h"
#include "support/markingtranslator.h"
#include "support/ownmethods.h"

#include <QAction>
#include <QApplication>
#include <QFileSystemModel>
#include <QFrame>
#include <QHeaderView>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QSplitter>
#include <QtTest>

class FileSystemWidgetTest : public FileManagerTest
{
    Q_OBJECT

private slots:
    // --- The form

    void signalsAndSlotsStandInTheirOrder()
    {
        QCOMPARE(ownMethods(FileSystemWidget::staticMetaObject),
                 QStringList({"openFile(QString,QString)",
                              "openFile(QString)",
                              "close()",
                              "setMenu()",
                              "setNoSelectionMenu()",
                              "directoryLoaded(QString)",
                              "menuRequested(QPoint)",
                              "setIndex(QModelIndex)",
                              "upButtonPressed()",
                              "doubleClicked(QModelIndex)",
                              "mousePressed(QModelIndex)",
                              "fillPlaces()",
                              "updatePlaces()",
                              "insertPlace(QIcon,QString)",
                              "setPlaceIndex(QModelIndex)",
                              "placesDoubleClicked(QModelIndex)",
                              "setHome()",
                              "showMenu(QModelIndex)",
                              "showNoSelectionMenu()",
                              "cutSlot()",
                              "copySlot()",
                              "pasteSlot()",
                              "removeSlot()",
                              "newFolderSlot()",
                              "renameSlot()",
                              "setEnabledButtons()",
                              "changeView()",
                              "copyFile()",
                              "removeFile()",
                              "renameFile(QString)"}));
    }

    void theToolRowStandsInItsOrder()
    {
        QStringList names;
        const auto* const row = manager().findChild<QLayout*>(QStringLiteral("horizontalLayout"));
        for (int i = 0; i < row->count(); ++i)
            names.append(row->itemAt(i)->widget()->objectName());
        QCOMPARE(names, QStringList({"upButton", "addressLineEdit", "renameButton", "newFolderButton",
                                     "cutButton", "copyButton", "pasteButton", "removeButton", "line",
                                     "listViewButton", "iconViewButton"}));
        QCOMPARE(manager().layout()->objectName(), QStringLiteral("verticalLayout_2"));
        QCOMPARE(manager().layout()->itemAt(0)->layout(), row);
        QCOMPARE(manager().layout()->itemAt(1)->widget(), find<QSplitter>("splitter"));
    }

    void theSplitterHoldsPlacesAndFolder()
    {
        auto* const splitter = find<QSplitter>("splitter");
        QCOMPARE(splitter->count(), 2);
        QCOMPARE(splitter->widget(0)->objectName(), QStringLiteral("placesView"));
        QCOMPARE(splitter->widget(1)->objectName(), QStringLiteral("verticalLayoutWidget"));
        const QLayout* const layout = splitter->widget(1)->layout();
        QCOMPARE(layout->objectName(), QStringLiteral("verticalLayout"));
        QCOMPARE(layout->contentsMargins(), QMargins());
        QStringList names;
        for (int i = 0; i < layout->count(); ++i)
            names.append(layout->itemAt(i)->widget()->objectName());
        QCOMPARE(names, QStringList({"listView", "iconView", "fileInfo"}));
    }

    void everyButtonHasItsPictureSizeAndToolTip_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("picture");
        QTest::addColumn<QString>("toolTip");
        QTest::addColumn<bool>("isFixed");
        QTest::newRow("up") << "upButton"
                            << "up" << QString() << true;
        QTest::newRow("rename") << "renameButton"
                                << "rename"
                                << "Rename" << false;
        QTest::newRow("new folder") << "newFolderButton"
                                    << "folder-new"
                                    << "New folder" << false;
        QTest::newRow("cut") << "cutButton"
                             << "cut"
                             << "Cut" << false;
        QTest::newRow("copy") << "copyButton"
                              << "copy"
                              << "Copy" << false;
        QTest::newRow("paste") << "pasteButton"
                               << "paste"
                               << "Paste" << false;
        QTest::newRow("remove") << "removeButton"
                                << "remove"
                                << "Delete" << false;
        QTest::newRow("list") << "listViewButton"
                              << "list-view"
                              << "List view" << true;
        QTest::newRow("icons") << "iconViewButton"
                               << "icon-view"
                               << "Icon view" << true;
    }
    void everyButtonHasItsPictureSizeAndToolTip()
    {
        QFETCH(QString, name);
        QFETCH(QString, picture);
        QFETCH(QString, toolTip);
        QFETCH(bool, isFixed);
        const QPushButton* const b = button(qPrintable(name));
        QVERIFY(b->isFlat());
        QVERIFY(b->text().isEmpty());
        QCOMPARE(b->toolTip(), toolTip);
        QVERIFY(!b->accessibleName().isEmpty());
        QCOMPARE(b->iconSize(), QSize(40, 40));
        QCOMPARE(image(b->icon(), 40), image(QIcon(QStringLiteral(":/icons/48x48/%1.png").arg(picture)), 40));
        if (isFixed)
            QCOMPARE(b->size(), QSize(48, 48));
        else
            QCOMPARE(b->sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed));
    }

    void theRestOfTheFormIsAsStated()
    {
        QCOMPARE(manager().windowTitle(), QStringLiteral("quillet"));
        const auto* const address_ = find<QLineEdit>("addressLineEdit");
        QCOMPARE(address_->height(), 28);
        QVERIFY(address_->isReadOnly());
        QCOMPARE(address_->font().weight(), 75);
        QCOMPARE(address_->actions().size(), 1);
        QCOMPARE(image(address_->actions().first()->icon(), 32),
                 image(QIcon(QStringLiteral(":/icons/32x32/folder-docs.png")), 32));
        const auto* const line = find<QFrame>("line");
        QCOMPARE(line->frameShape(), QFrame::VLine);
        QCOMPARE(line->frameShadow(), QFrame::Sunken);
        const auto* const places_ = find<QListView>("placesView");
        QCOMPARE(places_->iconSize(), QSize(64, 64));
        QVERIFY(!list()->itemsExpandable());
        QCOMPARE(list()->iconSize(), QSize(22, 22));
        QCOMPARE(list()->styleSheet(),
                 QStringLiteral("QTreeView::branch { border-image: url(nonexistent.png); }"));
        QVERIFY(list()->isSortingEnabled());
        QCOMPARE(list()->header()->sortIndicatorOrder(), Qt::AscendingOrder);
        QCOMPARE(icons()->viewMode(), QListView::IconMode);
        QCOMPARE(icons()->iconSize(), QSize(64, 64));
        QCOMPARE(icons()->gridSize(), QSize(128, 128));
        QCOMPARE(icons()->resizeMode(), QListView::Adjust);
        QCOMPARE(icons()->movement(), QListView::Snap);
        QVERIFY(icons()->wordWrap());
        QVERIFY(qobject_cast<IconDelegate*>(icons()->itemDelegate()));
        QVERIFY(icons()->isVisible());
        QVERIFY(!list()->isVisible());
        QVERIFY(!model()->resolveSymlinks());
        QVERIFY(model()->isReadOnly());
    }

    void everythingHasANameForTheBlind()
    {
        QCOMPARE(button("upButton")->accessibleName(), QStringLiteral("Up"));
        for (const char* const name : {"renameButton", "newFolderButton", "cutButton", "copyButton",
                                       "pasteButton", "removeButton", "listViewButton", "iconViewButton"})
            QCOMPARE(button(name)->accessibleName(), button(name)->toolTip());
        QCOMPARE(find<QLineEdit>("addressLineEdit")->accessibleName(), QStringLiteral("Folder"));
        QCOMPARE(find<QListView>("placesView")->accessibleName(), QStringLiteral("Places"));
        QCOMPARE(list()->accessibleName(), QStringLiteral("Files"));
        QCOMPARE(icons()->accessibleName(), QStringLiteral("Files"));
    }

    void adjustingSharesTheWidth()
    {
        manager().adjustLayout();
        QCOMPARE(list()->columnWidth(0), QGuiApplication::primaryScreen()->geometry().width() / 3);
        auto* const splitter = find<QSplitter>("splitter");
        QCOMPARE(splitter->widget(0)->sizePolicy().horizontalStretch(), 1);
        QCOMPARE(splitter->widget(1)->sizePolicy().horizontalStretch(), 4);
    }

    void everyTextIsTranslatedInOneContext()
    {
        MarkingTranslator translator;
        QCoreApplication::installTranslator(&translator);
        startManager(true, folder());
        QCoreApplication::removeTranslator(&translator);
        QVERIFY2(button("renameButton")->toolTip().contains(QLatin1String("FileSystemWidget")),
                 qPrintable(button("renameButton")->toolTip()));
        QVERIFY(button("upButton")->accessibleName().contains(QLatin1String("FileSystemWidget")));
    }

    // --- Views

    void theViewButtonsSwitchTheViews()
    {
        QCOMPARE(enabled(), QStringList({"up", "newFolder", "listView"}));
        press("listViewButton");
        QVERIFY(list()->isVisible());
        QVERIFY(!icons()->isVisible());
        QCOMPARE(enabled(), QStringList({"up", "newFolder", "iconView"}));
        press("iconViewButton");
        QVERIFY(icons()->isVisible());
        QVERIFY(!list()->isVisible());
        QCOMPARE(enabled(), QStringList({"up", "newFolder", "listView"}));
    }

    void theSelectionFollowsTheViews()
    {
        addFile("a.txt");
        addFile("b.txt");
        select("b.txt");
        press("listViewButton");
        QCOMPARE(selected(), QStringList("b.txt"));
        QVERIFY(list()->selectionModel()->isRowSelected(model()->index(path("b.txt")).row(),
                                                        list()->rootIndex())); // as after a click
        select("a.txt");
        press("iconViewButton");
        QCOMPARE(selected(), QStringList("a.txt"));
        QVERIFY(button("copyButton")->isEnabled());
    }

    void whatIsSelectedOutOfSightIsNotActedOn()
    {
        addFile("a.txt");
        addFile("b.txt");
        press("listViewButton");
        select("a.txt");
        press("iconViewButton");
        select("b.txt");
        press("copyButton");
        addFolder("sub");
        enter(path("sub"));
        press("pasteButton");
        QVERIFY(exists("sub/b.txt"));
        QVERIFY(!exists("sub/a.txt"));
        enter(folder());
        select("b.txt");
        press("listViewButton");
        list()->clearSelection();
        QVERIFY(!button("removeButton")->isEnabled());
        select("a.txt");
        press("iconViewButton");
        icons()->clearSelection();
        QVERIFY(!button("removeButton")->isEnabled());
    }

    void theViewThatComesHasTheKeyboard()
    {
        activate();
        QCOMPARE(manager().focusWidget(), icons());
        for (int i = 0; i < 2; ++i) {
            press("listViewButton");
            QCOMPARE(manager().focusWidget(), list());
            press("iconViewButton");
            QCOMPARE(manager().focusWidget(), icons());
        }
        button("listViewButton")->setFocus();
        QTest::keyClick(button("listViewButton"), Qt::Key_Space);
        QVERIFY(list()->isVisible());
        QCOMPARE(manager().focusWidget(), list());
    }

    void namesAreSearchedInTheFolderThatWasEnteredByKey()
    {
        activate();
        addFolder("inner/first");
        addFolder("inner/second");
        for (const char* const name : {"iconViewButton", "listViewButton"}) {
            press(name);
            enter(folder());
            select("inner");
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            QTRY_COMPARE(rootPath(), path("inner"));
            QVERIFY(isLoaded());
            QTRY_COMPARE(model()->rowCount(model()->index(rootPath())), 2);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_S);
            QCOMPARE(selected(), QStringList(QStringLiteral("second")));
        }
    }

    void aPageOfTheShellStartsWithTheKeyboardInTheFolder()
    {
        endManager();
        FileSystemWidget page(nullptr, true, folder());
        shell::setPageFlags(&page);
        page.show();
        page.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&page));
        QCOMPARE(QApplication::focusWidget(), page.findChild<QListView*>(QStringLiteral("iconView")));
        // Later it is where the user left it.
        auto* const button = page.findChild<QPushButton*>(QStringLiteral("upButton"));
        button->setFocus();
        page.hide();
        page.show();
        QCOMPARE(page.focusWidget(), button);
    }

    void aButtonThatIsDisabledLeavesTheKeyboardToTheFolder()
    {
        addFile("a.txt");
        for (const char* const name : {"renameButton", "cutButton", "copyButton", "removeButton"}) {
            select("a.txt");
            button(name)->setFocus();
            QCOMPARE(manager().focusWidget(), button(name));
            icons()->clearSelection();
            QCOMPARE(manager().focusWidget(), icons());
        }
    }

    void theMouseOnTheToolRowLeavesTheKeyboardInTheFolder()
    {
        addFile("a.txt");
        select("a.txt");
        press("copyButton");
        QTest::mouseRelease(button("copyButton"), Qt::LeftButton);
        QCOMPARE(manager().focusWidget(), icons());
        for (const char* const name :
             {"upButton", "renameButton", "newFolderButton", "cutButton", "copyButton", "pasteButton",
              "removeButton", "listViewButton", "iconViewButton"})
            QCOMPARE(button(name)->focusPolicy(), Qt::TabFocus);
    }

    // Wanted: what is selected in the list comes first.
    void theListsSelectionComesFirst()
    {
        addFile("a.txt", "a");
        addFile("b.txt", "b");
        select("a.txt");
        list()->selectionModel()->select(model()->index(path("b.txt")), QItemSelectionModel::ClearAndSelect);
        press("copyButton");
        manager().changeView();
        QCOMPARE(selected(), QStringList("b.txt"));
        addFolder("sub");
        enter(path("sub"));
        press("pasteButton");
        QVERIFY(exists("sub/b.txt"));
    }

    // --- Enabling

    void nothingIsSelectedInTheStead_data()
    {
        QTest::addColumn<bool>("isList");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("beside");
        for (const bool isList : {false, true}) {
            const char* const view = isList ? "list" : "icons";
            QTest::addRow("first, %s", view) << isList << "a.txt"
                                             << "b.txt";
            QTest::addRow("second, %s", view) << isList << "b.txt"
                                              << "c.txt";
            QTest::addRow("last, %s", view) << isList << "c.txt"
                                            << "b.txt";
        }
    }
    void nothingIsSelectedInTheStead()
    {
        QFETCH(bool, isList);
        QFETCH(QString, name);
        QFETCH(QString, beside);
        addFile("a.txt");
        addFile("b.txt");
        addFile("c.txt");
        if (isList)
            press("listViewButton");
        select("a.txt");
        select("b.txt");
        select("c.txt");
        select(name);
        QVERIFY(QFile::rename(path(name), path("z.txt")));
        QAbstractItemView* view = icons();
        if (isList)
            view = list();
        QTRY_VERIFY(!model()->index(path(name)).isValid());
        QCOMPARE(selected(), QStringList());
        QVERIFY(!button("removeButton")->isEnabled());
        QCOMPARE(model()->filePath(view->currentIndex()), path(beside)); // the keyboard goes on there
    }

    void theLastEntryThatGoesLeavesNothing()
    {
        addFile("a.txt");
        select("a.txt");
        QVERIFY(QFile::remove(path("a.txt")));
        QTRY_VERIFY(!icons()->currentIndex().isValid());
        QVERIFY(!button("removeButton")->isEnabled());
    }

    void buttonsAndMenusFollowTheSelection()
    {
        addFile("a.txt");
        QVERIFY(isLoaded());
        QCOMPARE(enabled(), QStringList({"up", "newFolder", "listView"}));
        select("a.txt");
        QCOMPARE(enabled(), QStringList({"up", "rename", "newFolder", "cut", "copy", "remove", "listView"}));
        QCOMPARE(opened([this] { manager().showMenu(QModelIndex()); }).enabled,
                 QStringList({"&Rename", "Cu&t", "&Copy", "&Delete"}));
        icons()->clearSelection();
        QCOMPARE(enabled(), QStringList({"up", "newFolder", "listView"}));
        QCOMPARE(opened([this] { manager().showMenu(QModelIndex()); }).enabled, QStringList());
    }

    void pastingIsEnabledWhileSomethingIsHeld()
    {
        addFile("a.txt");
        addFolder("sub");
        QCOMPARE(opened([this] { manager().showNoSelectionMenu(); }).enabled, QStringList("&New folder"));
        select("a.txt");
        press("copyButton");
        QVERIFY(button("pasteButton")->isEnabled());
        enter(path("sub")); // what is held survives
        QCOMPARE(enabled(), QStringList({"up", "newFolder", "paste", "listView"}));
        press("upButton");
        QVERIFY(button("pasteButton")->isEnabled()); // a new model too
        QCOMPARE(opened([this] { manager().showNoSelectionMenu(); }).enabled,
                 QStringList({"&New folder", "&Paste"}));
    }

    // --- Menus

    void theMenusHoldTheirEntriesAndOpenAtTheCursor()
    {
        const Opened selection = opened([this] { manager().showMenu(QModelIndex()); });
        QCOMPARE(selection.menus, 1);
        QCOMPARE(selection.texts, QStringList({"&Rename", "Cu&t", "&Copy", "&Delete"}));
        const Opened none = opened([this] { manager().showNoSelectionMenu(); });
        QCOMPARE(none.texts, QStringList({"&New folder", "&Paste"}));
        for (const QMenu* const menu : manager().findChildren<QMenu*>()) {
            for (const QAction* const action : menu->actions())
                QVERIFY2(!action->icon().pixmap(32, 32).isNull(), qPrintable(action->text()));
        }
    }

    void theMenusPicturesAreTheirs_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("picture");
        QTest::newRow("rename") << "&Rename"
                                << "rename";
        QTest::newRow("cut") << "Cu&t"
                             << "cut";
        QTest::newRow("copy") << "&Copy"
                              << "copy";
        QTest::newRow("delete") << "&Delete"
                                << "remove";
        QTest::newRow("new folder") << "&New folder"
                                    << "folder-new";
        QTest::newRow("paste") << "&Paste"
                               << "paste";
    }
    void theMenusPicturesAreTheirs()
    {
        QFETCH(QString, text);
        QFETCH(QString, picture);
        bool found = false;
        for (const QMenu* const menu : manager().findChildren<QMenu*>()) {
            for (const QAction* const action : menu->actions()) {
                if (action->text() != text)
                    continue;
                found = true;
                QCOMPARE(image(action->icon(), 32),
                         image(QIcon(QStringLiteral(":/icons/32x32/%1.png").arg(picture)), 32));
            }
        }
        QVERIFY(found);
    }

    void theNoSelectionMenuOpensOnEmptySpaceOfTheViewInSight()
    {
        addFile("a.txt");
        for (const bool isList : {false, true}) {
            if (isList)
                press("listViewButton");
            select("a.txt");
            QTest::qWait(20); // the layout
            QAbstractItemView* view = icons();
            if (isList)
                view = list();
            const QPoint item = view->visualRect(model()->index(path("a.txt"))).center();
            const QPoint empty(view->viewport()->width() - 5, view->viewport()->height() - 5);
            QCOMPARE(opened([&] { manager().menuRequested(item); }).menus, 0);
            QCOMPARE(opened([&] { manager().menuRequested(empty); }).texts,
                     QStringList({"&New folder", "&Paste"}));
        }
    }

    void theSelectionMenuOpensForTheRightMouseButtonAlone()
    {
        addFile("a.txt");
        select("a.txt");
        QTest::qWait(20); // the layout
        const QPoint item = icons()->visualRect(model()->index(path("a.txt"))).center();
        QCOMPARE(opened([&] { QTest::mousePress(icons()->viewport(), Qt::LeftButton, {}, item); }).menus, 0);
        QTest::mouseRelease(icons()->viewport(), Qt::LeftButton, {}, item);
        QCOMPARE(opened([&] { QTest::mousePress(icons()->viewport(), Qt::RightButton, {}, item); }).texts,
                 QStringList({"&Rename", "Cu&t", "&Copy", "&Delete"}));
        QTest::mouseRelease(icons()->viewport(), Qt::RightButton, {}, item);
    }

    void twoMouseButtonsOpenNoMenu()
    {
        addFile("a.txt");
        select("a.txt");
        QTest::qWait(20); // the layout
        const QPoint item = icons()->visualRect(model()->index(path("a.txt"))).center();
        QTest::mousePress(icons()->viewport(), Qt::LeftButton, {}, item);
        QCOMPARE(opened([&] { QTest::mousePress(icons()->viewport(), Qt::RightButton, {}, item); }).menus, 0);
        QTest::mouseRelease(icons()->viewport(), Qt::RightButton, {}, item);
        QTest::mouseRelease(icons()->viewport(), Qt::LeftButton, {}, item);
    }

    void theRightMouseButtonSelectsWhatItsMenuActsOn()
    {
        addFile("a.txt");
        addFile("b.txt");
        for (const bool isList : {false, true}) {
            if (isList)
                QTest::mouseClick(button("listViewButton"), Qt::LeftButton);
            QAbstractItemView* view = icons();
            if (isList)
                view = list();
            select("a.txt");
            select("b.txt");
            QTest::qWait(20); // the layout
            const QPoint item = view->visualRect(model()->index(path("a.txt"))).center();
            QCOMPARE(opened([&] { QTest::mousePress(view->viewport(), Qt::RightButton, {}, item); }).enabled,
                     QStringList({"&Rename", "Cu&t", "&Copy", "&Delete"}));
            QTest::mouseRelease(view->viewport(), Qt::RightButton, {}, item);
            QCOMPARE(selected(), QStringList("a.txt"));
        }
    }

    void bothViewsAskForTheirMenuThemselves()
    {
        for (QAbstractItemView* const view :
             {static_cast<QAbstractItemView*>(list()), static_cast<QAbstractItemView*>(icons())}) {
            QCOMPARE(view->contextMenuPolicy(), Qt::CustomContextMenu);
            const QPoint empty(icons()->viewport()->width() - 5, icons()->viewport()->height() - 5);
            QCOMPARE(opened([&] { emit view->customContextMenuRequested(empty); }).texts,
                     QStringList({"&New folder", "&Paste"}));
        }
    }

#ifndef Q_OS_WIN // where the cursor is the user's, and moves when it likes
    void menusOpenAtTheCursor()
    {
        QCursor::setPos(200, 150);
        QCOMPARE(opened([this] { manager().showMenu(QModelIndex()); }).place, QCursor::pos());
        QCOMPARE(opened([this] { manager().showNoSelectionMenu(); }).place, QCursor::pos());
    }
#endif
};

QTEST_MAIN(FileSystemWidgetTest)
#include "tst_filesystemwidget.moc"
