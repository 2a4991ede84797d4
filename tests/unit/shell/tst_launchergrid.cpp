#include "shell/launchergrid.h"

#include <QtTest>

using shell::GridCell;
using shell::GridSize;

class LauncherGridTest : public QObject
{
    Q_OBJECT

private slots:
    void theGridHasTheWholeCellsThatFit_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("rows");
        const auto row = [](int width, int height, int columns, int rows) {
            QTest::addRow("%dx%d", width, height) << QSize(width, height) << columns << rows;
        };
        row(0, 0, 0, 0);
        row(1, 1, 0, 0);
        row(73, 112, 0, 1);
        row(74, 111, 1, 0);
        row(74, 112, 1, 1);
        row(147, 223, 1, 1);
        row(148, 224, 2, 2);
        row(320, 198, 4, 1);
        row(1024, 726, 13, 6);
        row(1920, 1038, 25, 9);
        row(7680, 4278, 103, 38);
        row(10000, 10000, 135, 89);
        row(-1, -1, 0, 0);
        row(-1000, -1000, 0, 0);
    }
    void theGridHasTheWholeCellsThatFit()
    {
        QFETCH(QSize, size);
        QTEST(shell::gridSize(size).columns, "columns");
        QTEST(shell::gridSize(size).rows, "rows");
    }

    void cellsAreCountedDownTheColumns()
    {
        const GridSize grid{4, 3};
        QCOMPARE(grid.cells(), 12);
        for (int column = 0, index = 0; column < 4; ++column) {
            for (int row = 0; row < 3; ++row, ++index) {
                QCOMPARE(grid.cell(index).column, column);
                QCOMPARE(grid.cell(index).row, row);
                QCOMPARE(grid.index({column, row}), index);
            }
        }
    }

    void theFirstFreeCellComesDownTheColumns_data()
    {
        QTest::addColumn<QString>("cells"); // rows, free ones as ".", from the top, separated by "/"
        QTest::addColumn<int>("column");    // -1: none
        QTest::addColumn<int>("row");
        QTest::newRow("all free") << "..../..../...." << 0 << 0;
        QTest::newRow("one taken") << "x.../..../...." << 0 << 1;
        QTest::newRow("the first column full") << "x.../x.../x..." << 1 << 0;
        QTest::newRow("the first row full") << "xxxx/..../...." << 0 << 1;
        QTest::newRow("a gap") << "xx../.x../xx.." << 0 << 1;
        QTest::newRow("the last alone") << "xxxx/xxxx/xxx." << 3 << 2;
        QTest::newRow("none") << "xxxx/xxxx/xxxx" << -1 << -1;
        QTest::newRow("one row") << "xx.." << 2 << 0;
        QTest::newRow("one column") << "x/x/." << 0 << 2;
        QTest::newRow("no cells") << "" << -1 << -1;
    }
    void theFirstFreeCellComesDownTheColumns()
    {
        QFETCH(QString, cells);
        QFETCH(int, column);
        QFETCH(int, row);
        const QStringList rows = cells.split('/');
        const GridSize grid{rows.first().size(), rows.first().isEmpty() ? 0 : rows.size()};
        const auto cell = shell::firstFreeCell(
            grid, [&rows](const GridCell& c) { return rows.at(c.row).at(c.column) == '.'; });
        QCOMPARE(cell.has_value(), column >= 0);
        if (cell) {
            QCOMPARE(cell->column, column);
            QCOMPARE(cell->row, row);
        }
    }

    void aGridWithoutColumnsOrRowsHasNoFreeCell()
    {
        const auto isFree = [](const GridCell&) { return true; };
        QVERIFY(!shell::firstFreeCell({0, 5}, isFree));
        QVERIFY(!shell::firstFreeCell({5, 0}, isFree));
    }

    void theArrowKeysLeadToTheCellBeside_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QPoint>("to"); // (-1, -1): nowhere
        const QPoint nowhere(-1, -1);
        QTest::newRow("left") << int(Qt::Key_Left) << QPoint(2, 1) << QPoint(1, 1);
        QTest::newRow("right") << int(Qt::Key_Right) << QPoint(2, 1) << QPoint(3, 1);
        QTest::newRow("up") << int(Qt::Key_Up) << QPoint(2, 1) << QPoint(2, 0);
        QTest::newRow("down") << int(Qt::Key_Down) << QPoint(2, 1) << QPoint(2, 2);
        QTest::newRow("left at the border") << int(Qt::Key_Left) << QPoint(0, 1) << nowhere;
        QTest::newRow("right at the border") << int(Qt::Key_Right) << QPoint(3, 1) << nowhere;
        QTest::newRow("up at the border") << int(Qt::Key_Up) << QPoint(2, 0) << nowhere;
        QTest::newRow("down at the border") << int(Qt::Key_Down) << QPoint(2, 2) << nowhere;
        QTest::newRow("another key") << int(Qt::Key_A) << QPoint(2, 1) << nowhere;
    }
    void theArrowKeysLeadToTheCellBeside()
    {
        QFETCH(int, key);
        QFETCH(QPoint, from);
        const auto next = shell::neighbour({4, 3}, {from.x(), from.y()}, key);
        QTEST(next ? QPoint(next->column, next->row) : QPoint(-1, -1), "to");
    }
};

QTEST_GUILESS_MAIN(LauncherGridTest)
#include "tst_launchergrid.moc"
