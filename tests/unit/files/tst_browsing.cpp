// The file manager from folder to folder.
#include "support/filemanagertest.h"

#include <QDir>
#include <QFileSystemModel>
#include <QLabel>
#include <QSignalSpy>
#include <QtTest>

class BrowsingTest : public FileManagerTest
{
    Q_OBJECT

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

    // Selects "a.txt" while its folder, which has also the folder "sub", is being loaded.
    void selectWhileTheFolderLoads()
    {
        addFile("a.txt");
        addFolder("sub");
        select("a.txt");
        enter(path("sub"));
        manager().setIndex(model()->index(folder()));
        icons()->selectionModel()->select(model()->index(path("a.txt")), QItemSelectionModel::Select);
    }

private slots:
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
        selectWhileTheFolderLoads();
        manager().setEnabledButtons();
        QVERIFY(button("removeButton")->isEnabled());
        manager().setIndex(model()->index(path("sub")));
        QVERIFY(!button("removeButton")->isEnabled());
    }

    void whatWasSelectedWhileAFolderLoadedIsFollowedOnceItHas()
    {
        selectWhileTheFolderLoads();
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
};

QTEST_MAIN(BrowsingTest)
#include "tst_browsing.moc"
