#include "config/associationedits.h"

#include <QtTest>

using config::AssociationEdits;

// Ids joined with ":"; none of them is empty here.
static QStringList ids(const char* text)
{
    return *text ? QString::fromUtf8(text).split(QLatin1Char(':')) : QStringList();
}

class AssociationEditsTest : public QObject
{
    Q_OBJECT

private slots:
    void addingRemembersWhatIsNewAndForgetsThatItWasDeleted_data()
    {
        QTest::addColumn<QString>("deleted");
        QTest::addColumn<QString>("added");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("deletedAfter");
        QTest::addColumn<QString>("addedAfter");
        QTest::newRow("the first") << ""
                                   << ""
                                   << ""
                                   << ""
                                   << "x";
        QTest::newRow("another") << "c"
                                 << "d"
                                 << "a:b"
                                 << "c"
                                 << "d:x";
        QTest::newRow("shown already") << ""
                                       << ""
                                       << "a:x"
                                       << ""
                                       << "";
        QTest::newRow("shown and deleted") << "x:c"
                                           << ""
                                           << "x"
                                           << "c"
                                           << "";
        QTest::newRow("deleted before") << "x"
                                        << ""
                                        << "a"
                                        << ""
                                        << "x";
        QTest::newRow("deleted twice") << "x:c:x"
                                       << ""
                                       << "a"
                                       << "c"
                                       << "x";
        QTest::newRow("added before") << ""
                                      << "x:d"
                                      << "a"
                                      << ""
                                      << "x:d";
        QTest::newRow("added, then deleted") << "x"
                                             << "x"
                                             << "a"
                                             << ""
                                             << "x";
        QTest::newRow("another case is another id") << "X"
                                                    << "X"
                                                    << "X"
                                                    << "X"
                                                    << "X:x";
    }
    void addingRemembersWhatIsNewAndForgetsThatItWasDeleted()
    {
        QFETCH(QString, deleted);
        QFETCH(QString, added);
        QFETCH(QString, shown);
        const AssociationEdits edits = config::afterAdding({ids(qPrintable(deleted)), ids(qPrintable(added))},
                                                           ids(qPrintable(shown)), QStringLiteral("x"));
        QTEST(edits.deleted.join(':'), "deletedAfter");
        QTEST(edits.added.join(':'), "addedAfter");
    }

    void deletingRemembersAnIdOnce_data()
    {
        QTest::addColumn<QString>("deleted");
        QTest::addColumn<QString>("after");
        QTest::newRow("the first") << ""
                                   << "x";
        QTest::newRow("another") << "a:b"
                                 << "a:b:x";
        QTest::newRow("deleted before") << "x:b"
                                        << "x:b";
        QTest::newRow("another case is another id") << "X"
                                                    << "X:x";
    }
    void deletingRemembersAnIdOnce()
    {
        QFETCH(QString, deleted);
        const AssociationEdits edits =
            config::afterDeleting({ids(qPrintable(deleted)), ids("x:d")}, QStringLiteral("x"));
        QTEST(edits.deleted.join(':'), "after");
        QCOMPARE(edits.added, ids("x:d")); // also if it was added a moment ago
    }

    void theCataloguesAreShownBeforeTheAddedOnesWithoutTheDeleted_data()
    {
        QTest::addColumn<QString>("associated");
        QTest::addColumn<QString>("deleted");
        QTest::addColumn<QString>("added");
        QTest::addColumn<QString>("shown");
        QTest::newRow("nothing") << ""
                                 << ""
                                 << ""
                                 << "";
        QTest::newRow("the catalogue's order") << "b:a:c"
                                               << ""
                                               << ""
                                               << "b:a:c";
        QTest::newRow("one deleted") << "b:a:c"
                                     << "a"
                                     << ""
                                     << "b:c";
        QTest::newRow("all deleted") << "b:a"
                                     << "a:b"
                                     << ""
                                     << "";
        QTest::newRow("deleted elsewhere") << "b"
                                           << "z"
                                           << ""
                                           << "b";
        QTest::newRow("added") << "b"
                               << ""
                               << "y:x"
                               << "b:y:x";
        QTest::newRow("added to nothing") << ""
                                          << ""
                                          << "x"
                                          << "x";
        QTest::newRow("added and deleted") << "b"
                                           << "x"
                                           << "x:y"
                                           << "b:y";
        QTest::newRow("added and the catalogue's") << "b:x"
                                                   << ""
                                                   << "x:y"
                                                   << "b:x:y";
        QTest::newRow("added twice") << "b"
                                     << ""
                                     << "x:x"
                                     << "b:x";
        QTest::newRow("the catalogue's twice") << "b:b"
                                               << ""
                                               << ""
                                               << "b:b";
        QTest::newRow("added, the catalogue's, deleted") << "b:x"
                                                         << "x"
                                                         << "x"
                                                         << "b";
    }
    void theCataloguesAreShownBeforeTheAddedOnesWithoutTheDeleted()
    {
        QFETCH(QString, associated);
        QFETCH(QString, deleted);
        QFETCH(QString, added);
        const QStringList shown = config::idsToShow(ids(qPrintable(associated)),
                                                    {ids(qPrintable(deleted)), ids(qPrintable(added))});
        QTEST(shown.join(':'), "shown");
    }

    void anEntryMovesByOneRowWithinTheList_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("above");
        QTest::addColumn<int>("below");
        QTest::newRow("nothing") << -1 << 0 << -1 << -1;
        QTest::newRow("none of three") << -1 << 3 << -1 << -1;
        QTest::newRow("the only one") << 0 << 1 << -1 << -1;
        QTest::newRow("the first of two") << 0 << 2 << -1 << 1;
        QTest::newRow("the last of two") << 1 << 2 << 0 << -1;
        QTest::newRow("the middle of three") << 1 << 3 << 0 << 2;
        QTest::newRow("beyond the last") << 3 << 3 << -1 << -1;
        QTest::newRow("far outside") << -5 << 3 << -1 << -1;
    }
    void anEntryMovesByOneRowWithinTheList()
    {
        QFETCH(int, row);
        QFETCH(int, count);
        QTEST(config::rowAbove(row, count), "above");
        QTEST(config::rowBelow(row, count), "below");
    }

    void whatDiffersAnywhereIsModifiedAsAWhole_data()
    {
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("associated");
        QTest::addColumn<QString>("modified");
        QTest::newRow("nothing") << ""
                                 << ""
                                 << "";
        QTest::newRow("the same") << "a:b"
                                  << "a:b"
                                  << "";
        QTest::newRow("another order") << "b:a"
                                       << "a:b"
                                       << "b:a";
        QTest::newRow("one more") << "a:b"
                                  << "a"
                                  << "a:b";
        QTest::newRow("one less") << "a"
                                  << "a:b"
                                  << "a";
        QTest::newRow("all but none left") << ""
                                           << "a:b"
                                           << "";
        QTest::newRow("another one at the end") << "a:c"
                                                << "a:b"
                                                << "a:c";
        QTest::newRow("another case") << "A"
                                      << "a"
                                      << "A";
    }
    void whatDiffersAnywhereIsModifiedAsAWhole()
    {
        QFETCH(QString, shown);
        QFETCH(QString, associated);
        QTEST(config::modifiedItems(ids(qPrintable(shown)), ids(qPrintable(associated))).join(':'),
              "modified");
    }

    void deletedOnesFollowWithAMark_data()
    {
        QTest::addColumn<QString>("modified");
        QTest::addColumn<QString>("deleted");
        QTest::addColumn<QString>("entries");
        QTest::newRow("nothing") << ""
                                 << ""
                                 << "";
        QTest::newRow("an order") << "b:a"
                                  << ""
                                  << "b:a";
        QTest::newRow("an order and one deleted") << "b:a"
                                                  << "c"
                                                  << "b:a:!c";
        QTest::newRow("deleted alone") << ""
                                       << "c"
                                       << "!c";
        QTest::newRow("several deleted") << "a"
                                         << "d:c"
                                         << "a:!d:!c";
        QTest::newRow("both") << "a"
                              << "a"
                              << "a:!a";
    }
    void deletedOnesFollowWithAMark()
    {
        QFETCH(QString, modified);
        QFETCH(QString, deleted);
        QTEST(config::associationEntries(ids(qPrintable(modified)), ids(qPrintable(deleted))).join(':'),
              "entries");
    }
};

QTEST_APPLESS_MAIN(AssociationEditsTest)
#include "tst_associationedits.moc"
