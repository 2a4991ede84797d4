#include "files/places.h"

#include <QtTest>

using files::Places;

class PlacesTest : public QObject
{
    Q_OBJECT

    static Places places()
    {
        return {QStringLiteral("C:/Users/clerk"),
                QStringLiteral("clerk"),
                {"E:", "F:"},
                {"stick", "C"},
                QStringLiteral("LOCAL > ")};
    }

private slots:
    void homeAndDrivesAreShownByTheirNames_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("shown");
        QTest::newRow("home") << "C:/Users/clerk"
                              << "clerk";
        QTest::newRow("home with a slash") << "C:/Users/clerk/"
                                           << "clerk";
        QTest::newRow("below home") << "C:/Users/clerk/Documents/"
                                    << "clerk/Documents";
        QTest::newRow("wanted: a neighbour that begins like home") << "C:/Users/clerk2/x"
                                                                   << "clerk2/x";
        QTest::newRow("home in the middle stays") << "D:/C:/Users/clerk"
                                                  << "D:/C:/Users/clerk";
        QTest::newRow("another case stays") << "c:/users/CLERK"
                                            << "c:/users/CLERK";
        QTest::newRow("a drive") << "E:"
                                 << "LOCAL > stick";
        QTest::newRow("a drive's root") << "E:/"
                                        << "LOCAL > stick";
        QTest::newRow("below the second drive") << "F:/a/b.txt"
                                                << "LOCAL > C/a/b.txt";
        QTest::newRow("elsewhere") << "D:/x/"
                                   << "D:/x";
        QTest::newRow("one slash goes") << "D:/x//"
                                        << "D:/x/";
        QTest::newRow("nothing") << ""
                                 << "";
        QTest::newRow("the root") << "/"
                                  << "";
    }
    void homeAndDrivesAreShownByTheirNames()
    {
        QFETCH(QString, path);
        QFETCH(QString, shown);
        QCOMPARE(files::userFacingPath(path, places()), shown);
    }

    void drivesAreReplacedOneAfterTheOther()
    {
        Places chained = places();
        chained.drives = QStringList{"E:", "LOCAL > stick/a"};
        QCOMPARE(files::userFacingPath(QStringLiteral("E:/a/b"), chained), QStringLiteral("LOCAL > C/b"));
    }

    void aShareElsewhereIsNamedWhole()
    {
        Places elsewhere = places();
        elsewhere.shares = QStringList{"\\\\server\\1st", "C"};
        QCOMPARE(files::userFacingPath(QStringLiteral("E:/a"), elsewhere),
                 QStringLiteral("LOCAL > \\\\server\\1st/a"));
    }

    void charactersOfHomeMeanWhatTheyMeanInAPattern_data()
    {
        QTest::addColumn<QString>("home");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("shown");
        QTest::newRow("a dot is any character") << "/home/a.b"
                                                << "/home/axb/c"
                                                << "clerk/c";
        QTest::newRow("a plus repeats") << "/home/a+b"
                                        << "/home/aab/c"
                                        << "clerk/c";
        QTest::newRow("and is no plus") << "/home/a+b"
                                        << "/home/a+b/c"
                                        << "/home/a+b/c";
        QTest::newRow("brackets are a set") << "/home/[ab]"
                                            << "/home/b/c"
                                            << "clerk/c";
        QTest::newRow("parentheses are no part") << "/home/a(b)"
                                                 << "/home/ab/c"
                                                 << "clerk/c";
        QTest::newRow("what is no pattern matches nothing") << "/home/a(b"
                                                            << "/home/a(b/c"
                                                            << "/home/a(b/c";
        QTest::newRow("nor does a set without end") << "/home/[a"
                                                    << "/home/[a/c"
                                                    << "/home/[a/c";
    }
    void charactersOfHomeMeanWhatTheyMeanInAPattern()
    {
        QFETCH(QString, home);
        QFETCH(QString, path);
        QFETCH(QString, shown);
        Places odd = places();
        odd.home = home;
        QCOMPARE(files::userFacingPath(path, odd), shown);
    }

    void aDriveIsFoundByItsLabel()
    {
        Places twins = places();
        QCOMPARE(twins.driveLabel(1), QStringLiteral("LOCAL > C"));
        QCOMPARE(twins.driveOfLabel(QStringLiteral("LOCAL > C")), 1);
        QCOMPARE(twins.driveOfLabel(QStringLiteral("C")), -1);
        QCOMPARE(twins.driveOfLabel(QString()), -1);
        twins.shares = QStringList{"stick", "stick"};
        QCOMPARE(twins.driveOfLabel(QStringLiteral("LOCAL > stick")), 0); // the first
    }

    void aDriveThatIsNamedWithASlashIsTheTopToo()
    {
        Places slash = places();
        slash.drives = QStringList{"E:/", "F:"};
        QVERIFY(!files::mayGoUp(QStringLiteral("E:/"), slash));
    }

    void homeAndTheRootsOfDrivesAreTheTop_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<bool>("up");
        QTest::newRow("home") << "C:/Users/clerk" << false;
        QTest::newRow("wanted: home with a slash") << "C:/Users/clerk/" << true;
        QTest::newRow("below home") << "C:/Users/clerk/x" << true;
        QTest::newRow("above home") << "C:/Users" << true;
        QTest::newRow("a drive") << "F:" << false;
        QTest::newRow("a drive with a slash") << "F:/" << false;
        QTest::newRow("below a drive") << "F:/x" << true;
        QTest::newRow("another drive") << "G:/" << true;
    }
    void homeAndTheRootsOfDrivesAreTheTop()
    {
        QFETCH(QString, folder);
        QFETCH(bool, up);
        QCOMPARE(files::mayGoUp(folder, places()), up);
    }
};

QTEST_APPLESS_MAIN(PlacesTest)
#include "tst_places.moc"
