#include "shell/overviewgrid.h"

#include "support/quillettest.h"

#include <QtTest>

class OverviewGridTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void theGridIsTheLeastSquareThatHoldsTheTasksButNoneBelowThree_data()
    {
        QTest::addColumn<int>("tasks");
        QTest::addColumn<int>("columns");
        const auto row = [](int tasks, int columns) {
            QTest::newRow(QByteArray::number(tasks).constData()) << tasks << columns;
        };
        row(-1, 0);
        row(0, 0);
        row(1, 3);
        row(2, 3);
        row(8, 3);
        row(9, 3);
        row(10, 4);
        row(16, 4);
        row(17, 5);
        row(25, 5);
        row(26, 6);
        row(200, 15);
        row(225, 15);
        row(226, 16);
        row(2147483647, 46341);
    }
    void theGridIsTheLeastSquareThatHoldsTheTasksButNoneBelowThree()
    {
        QFETCH(int, tasks);
        QTEST(shell::overviewColumns(tasks), "columns");
    }
};

QTEST_GUILESS_MAIN(OverviewGridTest)
#include "tst_overviewgrid.moc"
