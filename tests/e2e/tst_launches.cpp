// Programs that are started from the launcher of the shipped shell, and the wait for them.
#include "support/shellstory.h"

#include <QElapsedTimer>
#include <QtTest>

namespace {

const QColor teal("#12566b");
const QColor leaf("#5b9a5b");
const QString slow = QStringLiteral("slow");
const QString quick = QStringLiteral("quick");
const QString silent = QStringLiteral("silent");
const QString slowTitle = QStringLiteral("Slow");
const QString quickTitle = QStringLiteral("Quick");

} // namespace

class LaunchesStory : public QObject
{
    Q_OBJECT

private slots:
    // An impatient user.
    void oneLaunchAtATimeUntilAWindowComesOrFifteenSecondsHavePassed()
    {
        ShellStory story(QStringLiteral("launches"));
        story.publish(slow, teal, {"--title", slowTitle, "--delay", "3000"});
        story.publish(quick, leaf, {"--title", quickTitle});
        story.publish(silent, leaf, {"--no-window"});
        QVERIFY(story.start());

        // Two launches in quick succession: the second is ignored.
        const QImage atRest = story.windows().screen();
        story.launch(slow);
        QVERIFY(story.waitForBusyCursor());
        story.launch(quick);
        const QPoint beside(story.page().center());
        story.windows().moveTo(beside.x(), beside.y());
        QVERIFY(story.waitForBusyCursor());
        story.look(QStringLiteral("busy"));
        QVERIFY(!story.isArrow());
        // A button that the mouse is over does not light up meanwhile.
        const QPoint icon = story.launcherButton(silent);
        story.windows().moveTo(icon.x(), icon.y());
        QTest::qWait(300);
        const QRect button(icon - QPoint(37, 37), QSize(74, 112));
        QCOMPARE(story.windows().screen().copy(button), atRest.copy(button));
        QVERIFY(story.waitForFront(ShellStory::program(slow), slowTitle));
        QVERIFY(story.waitForColour(teal));
        QVERIFY(story.waitForTaskButtons(1));
        QVERIFY(story.waitForArrow());
        QCOMPARE(story.startsAndEnds(), QStringList("start slow"));
        QCOMPARE(story.evidence(quick), QStringList());

        // A program that opens no window keeps the cursor busy for 15 seconds, and not longer.
        QVERIFY(story.showLauncher());
        QVERIFY(story.isArrow());
        QElapsedTimer timer;
        timer.start();
        story.launch(silent);
        QVERIFY(story.waitForBusyCursor());
        QVERIFY(story.waitForEvidence(silent, QStringLiteral("started")));
        story.launch(quick);
        QVERIFY(story.waitForArrow());
        const qint64 waited = timer.elapsed();
        QVERIFY2(waited >= 14900 && waited < 17000, qPrintable(QString::number(waited)));
        QCOMPARE(story.startsAndEnds(), QStringList({"start slow", "start silent"}));
        QVERIFY(story.waitForTaskButtons(1));

        // Then the next launch goes on.
        QVERIFY(story.launchAndWait(quick, quickTitle, 2));
        QVERIFY(story.windows().killProgram(ShellStory::program(silent)));
        QTRY_COMPARE_WITH_TIMEOUT(story.startsAndEnds(),
                                  QStringList({"start slow", "start silent", "start quick", "end silent"}),
                                  60000);
        QVERIFY(story.waitForTaskButtons(2));
        QCOMPARE(story.warnings(), QStringList());
    }

    // A program that is started and closed again, all day long.
    void theSameButtonTwentyTimes()
    {
        const int times = 20;
        ShellStory story(QStringLiteral("twenty"));
        story.publish(quick, leaf, {"--title", quickTitle});
        QVERIFY(story.start());
        const QImage before = story.windows().screen();
        QStringList expected;
        for (int i = 0; i < times; ++i) {
            const QByteArray time = "time " + QByteArray::number(i + 1);
            QVERIFY2(story.launchAndWait(quick, quickTitle, 1), time);
            story.click(QPoint(story.page().right() - 10, 8)); // its own close button
            QVERIFY2(story.waitForTaskButtons(0), time);
            QVERIFY2(story.waitForPage(), time);
            expected += {"start quick", "end quick"};
            QTRY_COMPARE_WITH_TIMEOUT(story.startsAndEnds(), expected, 60000);
        }
        QCOMPARE(story.evidence(quick).count(QStringLiteral("ended 0")), times);
        // No arguments and no windows have gathered.
        QCOMPARE(story.windows().windowList().size(), 2);
        story.windows().moveTo(story.page().center().x(), story.page().center().y());
        QTRY_COMPARE_WITH_TIMEOUT(story.windows().screen(), before, 60000);
        QCOMPARE(story.warnings(), QStringList());
    }
};

QTEST_GUILESS_MAIN(LaunchesStory)
#include "tst_launches.moc"
