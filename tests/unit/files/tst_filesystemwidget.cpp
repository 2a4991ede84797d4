// The file manager: its form, browsing, places and menus.
#include "support/filemanagertest.h"

#include "files/fileiconprovider.h"
#include "files/icondelegate.h"
#include "shell/ownwindow.h"
#include "support/markingtranslator.h"
#include "support/ownmethods.h"
#include "winapi/remoteclientmanager.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileSystemModel>
#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QSignalSpy>
#include <QSplitter>
#include <QStandardItemModel>
#include <QTimer>
#include <QtTest>

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

class FileSystemWidgetTest : public FileManagerTest
{
    Q_OBJECT

    // A menu that opens is looked at, and closed.
    struct Opened
    {
        int menus = 0;
        QStringList texts;
        QStringList enabled;
        QPoint place;
    };
    template <typename Open>
    Opened opened(Open open)
    {
        Opened seen;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu)
                return;
            ++seen.menus;
            seen.place = menu->pos();
            for (const QAction* const action : menu->actions()) {
                seen.texts.append(action->text());
                if (action->isEnabled())
                    seen.enabled.append(action->text());
            }
            menu->close();
        });
        timer.start(1);
        open();
        return seen;
    }

    QStandardItemModel* places()
    {
        return qobject_cast<QStandardItemModel*>(find<QListView>("placesView")->model());
    }
    QStringList placeNames()
    {
        QStringList names;
        for (int row = 0; row < places()->rowCount(); ++row)
            names.append(places()->item(row)->text());
        return names;
    }
    QModelIndex place(const QString& name) { return places()->index(placeNames().indexOf(name), 0); }
#ifndef Q_OS_WIN
    static bool hasDrive(const char* name)
    {
        const auto resources = simwin::networkResources();
        return std::any_of(resources.begin(), resources.end(),
                           [name](const auto& resource) { return resource.first == QLatin1String(name); });
    }
#endif
    // A path as the shell writes it: on Windows the test's folder lies in the home folder.
    static QString shown(const QString& path)
    {
        const QString home = QDir::homePath();
        return path.startsWith(home) ? QStringLiteral("clerk") + path.mid(home.size()) : path;
    }
    // How many slots and signals listen to a signal.
    static int receivers(const QObject* object, const char* signal)
    {
        struct Access : QObject
        {
            using QObject::receivers;
        };
        int (QObject::*const countOf)(const char*) const = &Access::receivers;
        return (object->*countOf)(signal);
    }
    QList<int> hooks()
    {
        QList<int> counts{receivers(model(), SIGNAL(rootPathChanged(QString)))};
        for (const QAbstractItemView* const view :
             {static_cast<QAbstractItemView*>(list()), static_cast<QAbstractItemView*>(icons())})
            counts.append(
                receivers(view->selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection))));
        return counts;
    }
    static QImage image(const QIcon& icon, int size)
    {
        return icon.pixmap(size, size).toImage();
    }

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

    // --- Entering folders

    void withoutAStartPathTheHomeFolderIsShown()
    {
        startManager(true, QString());
        QCOMPARE(rootPath(), QDir::homePath());
        QCOMPARE(address(), QStringLiteral("clerk"));
    }

    void enteringShowsTheFolderAndSaysWhenItIsRead()
    {
        addFolder("sub");
        addFile("sub/a.txt");
        QVERIFY(isLoaded());
        QTRY_VERIFY(model()->index(path("sub")).isValid());
        manager().setIndex(model()->index(path("sub")));
        QCOMPARE(status(), QStringLiteral("Loading folder %1...").arg(shown(path("sub"))));
        QCOMPARE(rootPath(), path("sub"));
        QCOMPARE(address(), shown(path("sub")));
        QCOMPARE(model()->filePath(icons()->rootIndex()), path("sub"));
        QCOMPARE(model()->filePath(list()->rootIndex()), path("sub"));
        QTRY_COMPARE(status(), QStringLiteral("Finished loading folder %1").arg(shown(path("sub"))));
        QTRY_COMPARE(model()->rowCount(icons()->rootIndex()), 1);
    }

    void pathsBelowHomeAreShownByTheUsersName()
    {
        QVERIFY(QDir().mkpath(QDir::homePath() + QStringLiteral("/quillet test")));
        enter(QDir::homePath() + QStringLiteral("/quillet test"));
        QCOMPARE(address(), QStringLiteral("clerk/quillet test"));
        QCOMPARE(status(), QStringLiteral("Finished loading folder clerk/quillet test"));
        QDir().rmdir(QDir::homePath() + QStringLiteral("/quillet test"));
    }

    void enteringTheFolderThatIsShownFinishesToo()
    {
        QVERIFY(isLoaded());
        enter(folder());
        QCOMPARE(status(), QStringLiteral("Finished loading folder %1").arg(shown(folder())));
        addFile("a.txt");
        select("a.txt");
        QVERIFY(button("copyButton")->isEnabled()); // the selection is still followed
    }

    void enteringClearsTheSelection()
    {
        addFile("a.txt");
        addFolder("sub");
        select("a.txt");
        enter(path("sub"));
        QVERIFY(selected().isEmpty());
        QCOMPARE(enabled(), QStringList({"up", "newFolder", "listView"}));
    }

    void aFolderThatIsNotThereIsNotEntered()
    {
        QVERIFY(isLoaded());
        manager().setIndex(QModelIndex());
        manager().setIndex(model()->index(path("nowhere")));
        QCOMPARE(rootPath(), folder());
        QCOMPARE(status(), QStringLiteral("Finished loading folder %1").arg(shown(folder())));
    }

    void aFolderThatVanishesWhileShownIsLeftByUp()
    {
        addFile("sub/a.txt");
        QVERIFY(isLoaded());
        enter(path("sub"));
        select("sub/a.txt");
        QVERIFY(QDir(path("sub")).removeRecursively());
        manager().doubleClicked(model()->index(path("sub/a.txt")));
        press("copyButton");
        press("upButton");
        QCOMPARE(rootPath(), folder());
        QVERIFY(isLoaded());
    }

    // The views would show every drive.
    void aFolderThatTheViewsLostIsEnteredAgainOrWhatIsLeftAboveIt_data()
    {
        QTest::addColumn<bool>("isThere");
#ifndef Q_OS_WIN // where a folder in view cannot be removed
        QTest::newRow("gone") << false;
#endif
        QTest::newRow("still there") << true;
    }
    void aFolderThatTheViewsLostIsEnteredAgainOrWhatIsLeftAboveIt()
    {
        QFETCH(bool, isThere);
        addFile("one/two/a.txt");
        addFile("b.txt");
        QVERIFY(isLoaded());
        enter(path("one/two"));
        select("one/two/a.txt");
        icons()->setRootIndex(QModelIndex());
        list()->setRootIndex(QModelIndex());
        if (isThere)
            addFile("one/two/c.txt");
        else
            QVERIFY(QDir(path("one")).removeRecursively());
        QMetaObject::invokeMethod(model(), "rowsRemoved", Q_ARG(QModelIndex, QModelIndex()), Q_ARG(int, 0),
                                  Q_ARG(int, 0));
        QTRY_VERIFY(icons()->rootIndex().isValid());
        QCOMPARE(list()->rootIndex(), icons()->rootIndex());
        QCOMPARE(rootPath(), isThere ? path("one/two") : folder());
        select(isThere ? "one/two/c.txt" : "b.txt");
    }

    void aFolderThatIsSetElsewhereClearsTheSelection()
    {
        addFile("a.txt");
        addFolder("sub");
        select("a.txt");
        model()->setRootPath(path("sub"));
        QVERIFY(!icons()->selectionModel()->hasSelection());
        QVERIFY(!button("copyButton")->isEnabled());
    }

    void whatOtherFoldersLoseLeavesTheKeyboardWhereItIs()
    {
        addFile("a.txt");
        addFile("sub/b.txt");
        enter(path("sub"));
        select("sub/b.txt");
        enter(folder());
        select("sub"); // the first row, as b.txt is in its folder
        const QModelIndex current = icons()->currentIndex();
        QMetaObject::invokeMethod(model(), "rowsAboutToBeRemoved", Q_ARG(QModelIndex, current),
                                  Q_ARG(int, current.row()), Q_ARG(int, current.row()));
        QCOMPARE(icons()->currentIndex(), current);
    }

    void selectionIsFollowedOncePerChange()
    {
        addFile("a.txt");
        addFile("b.txt");
        for (int i = 0; i < 5; ++i)
            enter(folder()); // hooks would pile up
        struct : QObject
        {
            int changes = 0;
            bool eventFilter(QObject*, QEvent* event) override
            {
                changes += event->type() == QEvent::EnabledChange;
                return false;
            }
        } watcher;
        button("copyButton")->installEventFilter(&watcher);
        select("a.txt");
        QCOMPARE(watcher.changes, 1);
    }

    void aDoubleClickEntersFoldersAndOpensFiles()
    {
        addFolder("sub");
        addFile("a.txt");
        select("a.txt");
        QSignalSpy opened(&manager(), SIGNAL(openFile(QString, QString)));
        manager().doubleClicked(model()->index(path("a.txt")));
        QCOMPARE(opened.size(), 1);
        QCOMPARE(opened.first().value(0).toString(), path("a.txt"));
        QVERIFY(opened.first().value(1).toString().isNull());
        manager().doubleClicked(model()->index(path("sub")));
        QCOMPARE(rootPath(), path("sub"));
        manager().doubleClicked(QModelIndex());
        QCOMPARE(rootPath(), path("sub"));
        QCOMPARE(opened.size(), 1);
    }

    void aDoubleClickWithTheMouseReachesTheFile()
    {
        addFile("a.txt");
        QSignalSpy opened(&manager(), SIGNAL(openFile(QString, QString)));
        for (const bool isList : {false, true}) {
            if (isList)
                press("listViewButton");
            select("a.txt");
            QAbstractItemView* view = icons();
            if (isList)
                view = list();
            QTest::qWait(20); // the layout
            const QPoint at = view->visualRect(model()->index(path("a.txt"))).center();
            QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
            QCOMPARE(opened.size(), isList ? 2 : 1);
        }
    }

#ifndef Q_OS_WIN // where links need rights
    void aDoubleClickOnALinkLeadsHome_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("to a folder") << "sub";
        QTest::newRow("to a file") << "a.txt";
    }
    void aDoubleClickOnALinkLeadsHome()
    {
        QFETCH(QString, target);
        addFolder("sub");
        addFile("a.txt");
        QVERIFY(QFile::link(path(target), path("link")));
        QSignalSpy opened(&manager(), SIGNAL(openFile(QString, QString)));
        QVERIFY(isLoaded());
        manager().doubleClicked(model()->index(path("link")));
        QCOMPARE(rootPath(), QDir::homePath());
        QVERIFY(opened.isEmpty());
    }
#endif

    void aDoubleClickInAnyColumnEntersTheFolder()
    {
        addFile("sub/a.txt");
        press("listViewButton");
        QVERIFY(isLoaded());
        const QModelIndex row = model()->index(path("sub"));
        manager().doubleClicked(row.sibling(row.row(), 3));
        QCOMPARE(rootPath(), path("sub"));
        QCOMPARE(list()->rootIndex(), model()->index(path("sub")));
        QTRY_COMPARE(model()->rowCount(list()->rootIndex()), 1);
    }

    void whatHasGoneIsNotOpened()
    {
        addFile("a.txt");
        select("a.txt");
        QSignalSpy opened(&manager(), SIGNAL(openFile(QString, QString)));
        const QModelIndex index = model()->index(path("a.txt"));
        QVERIFY(QFile::remove(path("a.txt")));
        manager().doubleClicked(index);
        QVERIFY(opened.isEmpty());
        QCOMPARE(rootPath(), folder());
    }

    void oddNamesAreShownAsTheyAre_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("a mnemonic") << "R&D";
        QTest::newRow("a place holder") << "50%1 %2";
        QTest::newRow("right to left") << QString::fromUtf8("\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D");
#ifndef Q_OS_WIN
        QTest::newRow("markup") << "<b>bold</b>";
        QTest::newRow("a line feed") << "two\nlines";
#endif
    }
    void oddNamesAreShownAsTheyAre()
    {
        QFETCH(QString, name);
        addFolder(name);
        const int height = find<QLabel>("fileInfo")->height();
        enter(path(name));
        QCOMPARE(status(), QStringLiteral("Finished loading folder ") + shown(path(name)));
        QCOMPARE(find<QLabel>("fileInfo")->textFormat(), Qt::PlainText);
        QCOMPARE(find<QLabel>("fileInfo")->height(), height);
        QCOMPARE(rootPath(), path(name));
    }

    void selectionHooksAreNeverPutOnTwice()
    {
        QVERIFY(isLoaded());
        const QList<int> once = hooks();
        for (int i = 0; i < 3; ++i)
            manager().directoryLoaded(folder());
        QCOMPARE(hooks(), once);
        manager().setIndex(model()->index(QDir::rootPath()));
        manager().setIndex(model()->index(folder()));
        QVERIFY(isLoaded());
        QCOMPARE(hooks(), once);
    }

    void aModelThatIsReplacedTakesItsHooksAlong()
    {
        addFolder("sub/deep");
        addFile("sub/a.txt");
        QVERIFY(isLoaded());
        const QList<int> once = hooks();
        for (const bool isLoading : {false, true}) {
            enter(path("sub"));
            if (isLoading)
                manager().setIndex(model()->index(path("sub/deep"))); // the hooks are off
            else
                enter(path("sub/deep"));
            const QPointer<QFileSystemModel> before(model());
            const QPointer<QItemSelectionModel> listed(list()->selectionModel());
            const QPointer<QItemSelectionModel> shown(icons()->selectionModel());
            press("upButton");
            QVERIFY(!before);
            QVERIFY(isLoaded());
            QTRY_VERIFY(!listed && !shown);
            QCOMPARE(hooks(), once);
            select("sub/a.txt");
            QVERIFY(button("copyButton")->isEnabled());
            model()->setRootPath(folder());
            QCOMPARE(selected(), QStringList());
        }
    }

    void whatIsNoLongerSelectedWhileAFolderLoadsIsNotActedOn()
    {
        addFile("a.txt");
        addFolder("sub");
        select("a.txt");
        enter(path("sub"));
        manager().setIndex(model()->index(folder()));
        icons()->selectionModel()->select(model()->index(path("a.txt")), QItemSelectionModel::Select);
        manager().setEnabledButtons();
        QVERIFY(button("removeButton")->isEnabled());
        manager().setIndex(model()->index(path("sub")));
        QVERIFY(!button("removeButton")->isEnabled());
    }

    void whatWasSelectedWhileAFolderLoadedIsFollowedOnceItHas()
    {
        addFile("a.txt");
        addFolder("sub");
        select("a.txt");
        enter(path("sub"));
        manager().setIndex(model()->index(folder()));
        icons()->selectionModel()->select(model()->index(path("a.txt")), QItemSelectionModel::Select);
        QVERIFY(!button("copyButton")->isEnabled());
        QVERIFY(isLoaded());
        QCOMPARE(selected(), QStringList("a.txt"));
        QVERIFY(button("copyButton")->isEnabled());
    }

    // --- Up

#ifndef Q_OS_WIN // where a folder in view cannot be removed
    void upLeavesFoldersThatAreGoneBehind()
    {
        addFile("one/two/three/a.txt");
        addFile("b.txt");
        enter(path("one/two/three"));
        QTRY_COMPARE(model()->rowCount(icons()->rootIndex()), 1);
        QVERIFY(QDir(path("one")).removeRecursively());
        QTest::qWait(200); // the model may notice, or not
        if (rootPath() != folder())
            press("upButton");
        QCOMPARE(rootPath(), folder());
        select("b.txt");
    }
#endif

    void listAndOrderSurviveANewModel()
    {
        addFile("a.txt");
        addFile("b.txt");
        addFolder("sub");
        press("listViewButton");
        list()->setColumnWidth(0, 321);
        list()->sortByColumn(0, Qt::DescendingOrder);
        enter(path("sub"));
        press("upButton");
        QVERIFY(isLoaded());
        QCOMPARE(list()->columnWidth(0), 321);
        select("a.txt");
        QTRY_COMPARE(list()->indexBelow(model()->index(path("b.txt"))), model()->index(path("a.txt")));
    }

    void upLeadsToTheParentInANewModel()
    {
        addFolder("sub");
        enter(path("sub"));
        const QPointer<QFileSystemModel> before(model());
        press("upButton");
        QCOMPARE(rootPath(), folder());
        QVERIFY(!before);
        QVERIFY(isLoaded());
        QCOMPARE(icons()->model(), list()->model());
    }

    void upStopsAtHome()
    {
        manager().setHome();
        QVERIFY(isLoaded());
        const QFileSystemModel* const before = model();
        press("upButton");
        QCOMPARE(rootPath(), QDir::homePath());
        QCOMPARE(model(), before);
    }

    void upFromTheTopOfTheFileSystemStays()
    {
        enter(QDir::rootPath());
        press("upButton");
        QVERIFY(!rootPath().isEmpty());
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

    // --- Places

    void withoutDrivesAndCloudFoldersThereIsTheHomeAlone()
    {
        QCOMPARE(placeNames(), QStringList("clerk"));
        const QStandardItem* const item = places()->item(0);
        QVERIFY(!item->isEditable());
        QCOMPARE(item->font().weight(), 75);
        QCOMPARE(image(item->icon(), 64), image(QIcon(QStringLiteral(":/icons/64x64/folder-home.png")), 64));
    }

    void cloudFoldersAreListedWhenTheyAreThere()
    {
        const QString dropbox = QDir::homePath() + QStringLiteral("/Dropbox");
        const QString drive = QDir::homePath() + QStringLiteral("/Google Drive");
        QVERIFY(QDir().mkpath(dropbox));
        QVERIFY(QDir().mkpath(drive));
        QCOMPARE(placeNames(), QStringList("clerk")); // until the list is made anew
        manager().updatePlaces();
        QCOMPARE(placeNames(), QStringList({"clerk", "Dropbox", "Google Drive"}));
        QCOMPARE(image(places()->item(1)->icon(), 64),
                 image(QIcon(QStringLiteral(":/icons/applications/dropbox.png")), 64));
        QCOMPARE(image(places()->item(2)->icon(), 64),
                 image(QIcon(QStringLiteral(":/icons/applications/google-drive.png")), 64));
        manager().placesDoubleClicked(place("Dropbox"));
        QCOMPARE(rootPath(), dropbox);
        manager().placesDoubleClicked(place("Google Drive"));
        QCOMPARE(rootPath(), drive);
        QVERIFY(isLoaded());
        QDir().rmdir(drive);
        manager().placesDoubleClicked(place("Google Drive")); // gone, and what was shown comes back if it can
        QDir().rmdir(dropbox);
    }

    void aPlaceIsEnteredInANewModel()
    {
        const QPointer<QFileSystemModel> before(model());
        manager().placesDoubleClicked(place("clerk"));
        QVERIFY(!before);
        QCOMPARE(rootPath(), QDir::homePath());
        QVERIFY(isLoaded());
    }

    void aClickOnAPlaceIsEnough()
    {
        auto* const view = find<QListView>("placesView");
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(place("clerk")).center());
        QCOMPARE(rootPath(), QDir::homePath());
        QVERIFY(isLoaded());
    }

    void aDoubleClickOnAPlaceEntersIt()
    {
        auto* const view = find<QListView>("placesView");
        emit view->doubleClicked(place("clerk"));
        QCOMPARE(rootPath(), QDir::homePath());
        QVERIFY(isLoaded());
    }

    void thePlacesAreReachedByTheKeyboard()
    {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            enter(folder());
            activate();
            auto* const view = find<QListView>("placesView");
            view->setFocus();
            QTest::keyClick(view, Qt::Key_Down);
            QTest::keyClick(view, Qt::Key_Home);
            QCOMPARE(view->currentIndex(), place("clerk"));
            QTest::keyClick(view, key);
            QCOMPARE(rootPath(), QDir::homePath());
            QVERIFY(isLoaded());
            QCOMPARE(manager().focusWidget(), view);
        }
    }

    void whenPlaceAndFolderHaveGoneWhatIsLeftAboveComes()
    {
        manager().insertPlace(QIcon(), QStringLiteral("LOCAL > gone"));
        addFolder("sub");
        enter(path("sub"));
        QVERIFY(QDir().rmdir(path("sub")));
        manager().placesDoubleClicked(place("LOCAL > gone"));
        QCOMPARE(rootPath(), folder());
        QVERIFY(isLoaded());
    }

    void aPlaceThatIsNoneLeavesTheFolderInView()
    {
        manager().insertPlace(QIcon(), QStringLiteral("LOCAL > gone"));
        manager().placesDoubleClicked(place("LOCAL > gone"));
        QCOMPARE(rootPath(), folder());
        manager().placesDoubleClicked(QModelIndex());
        QCOMPARE(rootPath(), folder());
        manager().setPlaceIndex(QModelIndex());
        QCOMPARE(rootPath(), folder());
        QVERIFY(isLoaded());
    }

    void aUserCalledDropboxGoesToTheDropboxFolder()
    {
        sandbox().setVariable("USERNAME", "Dropbox");
        const QString dropbox = QDir::homePath() + QStringLiteral("/Dropbox");
        QVERIFY(QDir().mkpath(dropbox));
        manager().updatePlaces();
        QCOMPARE(placeNames(), QStringList({"Dropbox", "Dropbox"}));
        manager().setPlaceIndex(places()->index(0, 0));
        QCOMPARE(rootPath(), dropbox);
        QVERIFY(isLoaded());
        manager().setHome();
        QDir().rmdir(dropbox);
    }

    void insertedPlacesComeLast()
    {
        manager().insertPlace(QIcon(), QStringLiteral("one"));
        manager().insertPlace(QIcon(), QStringLiteral("two"));
        QCOMPARE(placeNames(), QStringList({"clerk", "one", "two"}));
        manager().updatePlaces();
        QCOMPARE(placeNames(), QStringList("clerk"));
    }

    void aNewListOfPlacesIsNotShown()
    {
        const QStandardItemModel* const before = places();
        manager().insertPlace(QIcon(), QStringLiteral("one"));
        manager().fillPlaces();
        QCOMPARE(places(), before);
        QCOMPARE(placeNames(), QStringList({"clerk", "one"}));
    }

#ifndef Q_OS_WIN
    // --- The client's drives

    void drivesComeFourSecondsLater()
    {
        simwin::addNetworkResource(QStringLiteral("\\\\TSCLIENT\\stick"));
        startManager(false, QString());
        QTest::qWait(3500);
        QCOMPARE(placeNames(), QStringList("clerk"));
        QTRY_COMPARE(placeNames(), QStringList({"clerk", "LOCAL > stick"}));
        QCOMPARE(image(places()->item(1)->icon(), 64),
                 image(QIcon(QStringLiteral(":/icons/64x64/folder.png")), 64));
        QVERIFY(hasDrive("E:"));
        manager().close();
        QVERIFY(!hasDrive("E:"));
        QVERIFY(!manager().isVisible());
        manager().close(); // nothing more to give back
    }

    void aDriveIsAPlaceAndTheTopOfItsFolders()
    {
        addFolder("stick/sub");
        addFolder("slash");
        simwin::addNetworkResource(QStringLiteral("\\\\TSCLIENT\\R&D"), path("stick"));
        simwin::addNetworkResource(QStringLiteral("\\\\TSCLIENT\\R&D"), path("slash"));
        startManager(false, folder());
        auto* const drives = manager().findChild<RemoteClientManager*>();
        drives->start();
        QCOMPARE(placeNames(), QStringList({"clerk", "LOCAL > R&D", "LOCAL > R&D"}));
        manager().placesDoubleClicked(places()->index(2, 0)); // of two that are called alike, the first
        QCOMPARE(rootPath(), path("stick"));
        QCOMPARE(address(), QStringLiteral("LOCAL > R&D"));
        QVERIFY(isLoaded());
        QCOMPARE(status(), QStringLiteral("Finished loading folder LOCAL > R&D"));
        const QFileSystemModel* const before = model();
        press("upButton");
        QCOMPARE(rootPath(), path("stick"));
        QCOMPARE(model(), before);
        enter(path("stick/sub"));
        QCOMPARE(address(), QStringLiteral("LOCAL > R&D/sub"));
        press("upButton");
        QCOMPARE(rootPath(), path("stick"));
        QVERIFY(isLoaded());
    }

    void withoutADriveManagerNothingIsLookedFor()
    {
        simwin::addNetworkResource(QStringLiteral("\\\\TSCLIENT\\stick"));
        startManager(true, QString());
        QTest::qWait(4500);
        QCOMPARE(placeNames(), QStringList("clerk"));
    }
#endif
};

QTEST_MAIN(FileSystemWidgetTest)
#include "tst_filesystemwidget.moc"
