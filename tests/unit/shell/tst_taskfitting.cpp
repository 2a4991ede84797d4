#include "shell/taskfitting.h"

#include <QtTest>

using namespace shell;

class TaskFittingTest : public QObject
{
    Q_OBJECT

    static QString shown(const TaskFit& fit, int tasks)
    {
        QString text;
        for (int task = 0; task < tasks; ++task)
            text += fit.shows(task) ? QLatin1Char('x') : QLatin1Char('.');
        return text;
    }

private slots:
    void tasksFitOrScroll_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("tasks");
        QTest::addColumn<int>("panelWidth");
        QTest::addColumn<int>("scrollLimit");
        QTest::addColumn<QString>("shown");
        QTest::newRow("1024, none") << 1024 << 0 << 256 << 0 << "";
        QTest::newRow("1024, twelve fit") << 1024 << 12 << 256 << 0 << "xxxxxxxxxxxx";
        QTest::newRow("1024, thirteen scroll") << 1024 << 13 << 256 << 2 << "..xxxxxxxxxxx";
        QTest::newRow("1024, twenty") << 1024 << 20 << 256 << 9 << ".........xxxxxxxxxxx";
        QTest::newRow("1920, thirty fit") << 1920 << 30 << 288 << 0 << QString(30, 'x');
        QTest::newRow("1920, thirty-one fit not")
            << 1920 << 31 << 288 << 2 << QString("..") + QString(29, 'x');
        QTest::newRow("800") << 800 << 8 << 272 << 2 << "..xxxxxx";
        QTest::newRow("640") << 640 << 4 << 256 << 0 << "xxxx";
        // Here the panel is what is spare beside two tasks.
        QTest::newRow("500, two fit") << 500 << 2 << 212 << 0 << "xx";
        QTest::newRow("500, three") << 500 << 3 << 212 << 2 << "..x";
        QTest::newRow("320, two fit") << 320 << 2 << 32 << 0 << "xx";
        QTest::newRow("320, five") << 320 << 5 << 32 << 4 << "....x";
        // Nothing is spare: the panel gets more than there is room for. Division goes toward zero.
        QTest::newRow("240") << 240 << 1 << -48 << 0 << "x";
        QTest::newRow("0") << 0 << 1 << -288 << 0 << "x";
    }
    void tasksFitOrScroll()
    {
        QFETCH(int, width);
        QFETCH(int, tasks);
        const TaskFit fit = fitTasks(width, 3, tasks);
        QTEST(fit.panelWidth, "panelWidth");
        QTEST(fit.scrollLimit, "scrollLimit");
        QTEST(shown(fit, tasks), "shown");
        QCOMPARE(fit.firstVisible, fit.scrollLimit); // the view is at the end
    }

    void fewerFixedButtonsLeaveMoreRoom()
    {
        QCOMPARE(fitTasks(1024, 0, 0).panelWidth, 256);
        QVERIFY(!fitTasks(1024, 0, 15).scrolls());
        QVERIFY(fitTasks(1024, 0, 16).scrolls());
    }

    void panelTasksAndFixedButtonsFillEveryScreen()
    {
        for (int width = 320; width <= 3840; ++width) {
            for (int tasks = 0; tasks <= 60; ++tasks) {
                const TaskFit fit = fitTasks(width, 3, tasks);
                const int fitting = (width - 4 * taskButtonWidth - fit.panelWidth) / taskButtonWidth;
                QCOMPARE(fit.panelWidth + (4 + fitting) * taskButtonWidth, width);
                QVERIFY(fit.panelWidth >= 0 && fit.panelWidth < 250 + taskButtonWidth);
                QCOMPARE(fit.scrolls(), tasks > fitting);
                QCOMPARE(fit.visible, fit.scrolls() ? fitting - 1 : tasks);
                QCOMPARE(shown(fit, tasks).count('x'), fit.scrolls() ? fitting - 1 : tasks);
                QVERIFY(tasks == 0 || !fit.scrolls() || fitting < 2 || fit.shows(tasks - 1));
            }
        }
    }

    // --- Scrolling

    void everyPressMovesTheViewByOneTask()
    {
        constexpr int tasks = 20;
        const TaskFit fit = fitTasks(1024, 3, tasks);
        QString view = shown(fit, tasks);
        int first = fit.firstVisible;
        const auto apply = [&](const ScrollStep& step) {
            QCOMPARE(view.at(step.hide), QChar('x'));
            QCOMPARE(view.at(step.show), QChar('.'));
            view[step.hide] = '.';
            view[step.show] = 'x';
            first = step.firstVisible;
        };
        while (first > 0 && !QTest::currentTestFailed()) {
            apply(scrollLeft(first, fit.scrollLimit, tasks));
            QCOMPARE(view.indexOf('x'), first);
            QCOMPARE(view.count('x'), 11);
        }
        QCOMPARE(view, QStringLiteral("xxxxxxxxxxx........."));
        while (first < fit.scrollLimit && !QTest::currentTestFailed()) {
            apply(scrollRight(first, fit.scrollLimit, tasks));
            QCOMPARE(view.indexOf('x'), first);
        }
        QCOMPARE(view, QStringLiteral(".........xxxxxxxxxxx"));
    }

    void atTheLeftEndNothingChanges()
    {
        for (const int first : {0, -1}) {
            const ScrollStep step = scrollLeft(first, 2, 13);
            QCOMPARE(step.hide, -1);
            QCOMPARE(step.show, -1);
            QCOMPARE(step.firstVisible, first);
        }
    }

    void onTheRightThereIsNoEnd()
    {
        const ScrollStep step = scrollRight(2, 2, 13);
        QCOMPARE(step.hide, 2);
        QCOMPARE(step.show, 13); // which no task has
        QCOMPARE(step.firstVisible, 3);
    }
};

QTEST_GUILESS_MAIN(TaskFittingTest)
#include "tst_taskfitting.moc"
