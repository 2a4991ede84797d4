// How the task bar fits its tasks to the screen, and scrolls them.
#include "shell/taskfitting.h"
#include "support/tabbartest.h"

#include <QApplication>
#include <QScreen>
#include <QtTest>

class TabBarFittingTest : public TabBarTest
{
    Q_OBJECT

private slots:
    // --- Fitting and scrolling. The offscreen screen is 800 pixels wide.

    void tasksThatDoNotFitScroll()
    {
        const shell::TaskFit fit = shell::fitTasks(QApplication::primaryScreen()->geometry().width(), 3, 0);
        m_bar->updateContents();
        QCOMPARE(panel()->width(), fit.panelWidth);
        int tasks = 0;
        while (!shell::fitTasks(QApplication::primaryScreen()->geometry().width(), 3, tasks).scrolls())
            ++tasks;
        addTasks(tasks - 1);
        QCOMPARE(shown(), QString(tasks - 1, 'x'));
        QVERIFY(arrow("leftButton")->isHidden());
        clearDebugOutput();
        addTask(0x2000);
        QCOMPARE(shown(), QStringLiteral("..") + QString(tasks - 2, 'x'));
        QCOMPARE(debugOutput().filter(QRegularExpression(QStringLiteral("^(shown|hidden)$"))),
                 QStringList({"hidden", "hidden"}) +
                     QStringList(QVector<QString>(tasks - 2, "shown").toList()));
        QVERIFY(!arrow("leftButton")->isHidden());
        QVERIFY(arrow("leftButton")->isEnabled());
        QVERIFY(!arrow("rightButton")->isHidden());
        QVERIFY(!arrow("rightButton")->isEnabled());

        arrow("leftButton")->click();
        QCOMPARE(shown(), QStringLiteral(".") + QString(tasks - 2, 'x') + QStringLiteral("."));
        QVERIFY(arrow("rightButton")->isEnabled());
        arrow("leftButton")->click();
        QCOMPARE(shown(), QString(tasks - 2, 'x') + QStringLiteral(".."));
        QVERIFY(!arrow("leftButton")->isEnabled());
        QMetaObject::invokeMethod(m_bar.get(), "leftButtonClicked"); // as if it were
        QCOMPARE(shown(), QString(tasks - 2, 'x') + QStringLiteral(".."));
        arrow("rightButton")->click();
        arrow("rightButton")->click();
        QCOMPARE(shown(), QStringLiteral("..") + QString(tasks - 2, 'x'));
        QVERIFY(!arrow("rightButton")->isEnabled());
        QMetaObject::invokeMethod(m_bar.get(), "rightButtonClicked"); // it has no end of its own
        QCOMPARE(shown(), QStringLiteral("...") + QString(tasks - 3, 'x'));

        setForegroundWindow(0);
        m_bar->removeButton(3);
        QCOMPARE(shown(), QString(tasks - 1, 'x'));
        QVERIFY(arrow("rightButton")->isHidden());
    }

    void theBarStaysAsWideAsTheScreenAsTasksComeAndGo()
    {
        showActive();
        const int width = QGuiApplication::primaryScreen()->size().width();
        const int room = roomFor();
        const auto isWhole = [&] {
            return m_bar->width() == width && powerButton()->geometry().right() == width - 1;
        };
        for (int i = 0; i < room + 3; ++i) {
            addTask(0x1000 + i);
            QVERIFY2(isWhole(), qPrintable(QStringLiteral("%1 tasks: %2").arg(i + 1).arg(m_bar->width())));
        }
        arrow("leftButton")->click();
        arrow("rightButton")->click();
        QVERIFY(isWhole());
        for (int i = room + 3; i > 0; --i) {
            m_bar->removeButton(m_bar->count() - 1);
            QVERIFY2(isWhole(), qPrintable(QStringLiteral("%1 tasks: %2").arg(i - 1).arg(m_bar->width())));
        }
    }

    void aNewTaskIsSelectedBeforeTheTasksAreFitted()
    {
        const int width = QApplication::primaryScreen()->geometry().width();
        int tasks = 0;
        while (!shell::fitTasks(width, 3, tasks + 1).scrolls())
            ++tasks;
        addTasks(tasks);
        bool fitted = true;
        connect(m_bar.get(), &TabBar::currentChanged, this,
                [&] { fitted = !arrow("leftButton")->isHidden(); });
        addTask(0x2000);
        QVERIFY(!fitted);
        QVERIFY(!arrow("leftButton")->isHidden());
    }

    void twoHundredTasksAreCalm()
    {
        addTasks(200);
        QCOMPARE(m_bar->count(), 203);
        QVERIFY(shown().endsWith('x'));
        QVERIFY(shown().startsWith('.'));
        setForegroundWindow(0);
        while (m_bar->count() > 3)
            m_bar->removeButton(3);
        QCOMPARE(shown(), QString());
    }

    // --- Geometry

    void theBarStandsBelowAnAreaAndFitsItsPages()
    {
        clearDebugOutput();
        m_bar->resize(QSize(1280, 982));
        QCOMPARE(debugOutput().first(),
                 QStringLiteral("Setting new geometry - x: 0, y: 982, width: 1280, height: 42"));
        QCOMPARE(m_bar->geometry(), QRect(0, 982, 1280, 42));
        const int screenWidth = QApplication::primaryScreen()->geometry().width(); // not the area's
        QCOMPARE(panel()->maximumWidth(), shell::fitTasks(screenWidth, 3, 0).panelWidth);
        QCOMPARE(m_bar->buttonAt(0)->widget()->size(), QSize(1280, 982));
        QCOMPARE(m_bar->buttonAt(2)->widget()->size(), QSize(1280, 982));
    }

    void strangeScreensAreCalm()
    {
        for (const QSize size : {QSize(1, 1), QSize(0, 0), QSize(320, 198), QSize(7680, 4278)})
            m_bar->resize(size);
        QCOMPARE(m_bar->pos(), QPoint(0, 4278));
    }
};

QTEST_MAIN(TabBarFittingTest)
#include "tst_tabbarfitting.moc"
