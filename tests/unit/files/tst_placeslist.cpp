// The file manager's list of places, and the client's drives in it.
#include "support/filemanagertest.h"
#include "winapi/remoteclientmanager.h"

#include <QDir>
#include <QFileSystemModel>
#include <QStandardItemModel>
#include <QtTest>

#include <algorithm>

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

class PlacesListTest : public FileManagerTest
{
    Q_OBJECT

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

private slots:
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

QTEST_MAIN(PlacesListTest)
#include "tst_placeslist.moc"
