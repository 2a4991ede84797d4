#include "catalogue/associations.h"

#include <QtTest>

using namespace catalogue;

class AssociationsTest : public QObject
{
    Q_OBJECT

    static QStringList list(const char* entries)
    {
        return *entries ? QString::fromUtf8(entries).split(QLatin1Char(':')) : QStringList();
    }

private slots:
    void aMarkTakesItsApplicationOutOfTheLocalEntriesOnly_data()
    {
        QTest::addColumn<QStringList>("server");
        QTest::addColumn<QStringList>("local");
        QTest::addColumn<QStringList>("merged");
        const auto row = [](const char* name, const char* server, const char* local, const char* merged) {
            QTest::newRow(name) << list(server) << list(local) << list(merged);
        };
        row("the server's come first", "b:a", "d:c", "b:a:d:c");
        row("duplicates: the first stays", "b:a:b", "a:c:b:c", "b:a:c");
        row("marked and local", "a:!b", "b:c", "a:c");
        row("marked, local many times", "!b", "b:c:b", "c");
        row("marked and named by the server", "a:!b:b", "c", "a:b:c");
        row("the same, the other way round", "b:!b", "", "b");
        row("the server's name stays, the local one goes", "b:!b", "b:c", "b:c");
        row("marks in a row", "!a:!b:!c:d", "a:b:c:e", "d:e");
        row("the same mark many times", "!a:x:!a:!a:y", "a:z", "x:y:z");
        row("a mark at the end", "a:b:!c", "c:d", "a:b:d");
        row("case matters", "!A", "a", "a");
        row("a mark of nothing takes the empty entry", "!", ":a", "a");
        row("a mark of a mark", "!!a", "!a:a", "a");
        row("local marks stay", "a", "!b", "a:!b");
        row("nothing from the server", "", "a", "a");
        row("nothing at all", "", "", "");
    }
    void aMarkTakesItsApplicationOutOfTheLocalEntriesOnly()
    {
        QFETCH(QStringList, server);
        QFETCH(QStringList, local);
        QTEST(mergedAssociations(server, local), "merged");
    }

    void tenThousandEntriesAreMerged()
    {
        QStringList server;
        QStringList local;
        for (int i = 0; i < 10000; ++i) {
            server.append(QStringLiteral("a%1").arg(i));
            local.append(QStringLiteral("b%1").arg(i));
        }
        server.append(QStringLiteral("!b9999"));
        const QStringList merged = mergedAssociations(server, local);
        QCOMPARE(merged.size(), 19999);
        QCOMPARE(merged.at(9999), QStringLiteral("a9999"));
        QCOMPARE(merged.last(), QStringLiteral("b9998"));
    }

    void excludedIdsLoseTheirMarks()
    {
        QCOMPARE(excludedIds(list("a:!b:!:!!c:d!")), QStringList({"b", "", "!c"}));
        QCOMPARE(excludedIds(QStringList(QString())), QStringList());
    }
};

QTEST_GUILESS_MAIN(AssociationsTest)
#include "tst_associations.moc"
