// What happens to a session of the shipped shell from outside: suspension, reconnections, a server that goes,
// and its end.
#include "support/shellstory.h"

#include <QElapsedTimer>
#include <QtTest>

namespace {

const QColor teal("#12566b");
const QColor leaf("#5b9a5b");
const QString ledger = QStringLiteral("ledger");
const QString mail = QStringLiteral("mail");
const QString shellProgram = QStringLiteral("quillet.exe");

} // namespace

class SessionStory : public QObject
{
    Q_OBJECT

    // Every window with its place, the foremost first.
    static QStringList windows(ShellStory& story)
    {
        QStringList list;
        for (const WineWindow& window : story.windows().windowList())
            list.append(QStringLiteral("%1 %2 %3,%4 %5x%6 %7")
                            .arg(window.program, window.title)
                            .arg(window.frame.x())
                            .arg(window.frame.y())
                            .arg(window.frame.width())
                            .arg(window.frame.height())
                            .arg(window.state));
        return list;
    }

    static int layouts(const ShellStory& story)
    {
        return story.debug().filter(QStringLiteral("Setting new geometry")).size();
    }

    static void verifyNothingFlickers(ShellStory& story, const QString& name)
    {
        const int times = 5;
        story.windows().moveTo(story.page().center().x(), story.page().center().y());
        QTest::qWait(700); // what led here is over, for the tracker too
        const QStringList windowsBefore = windows(story);
        const QImage before = story.look(name + QStringLiteral("-before"));
        const int layoutsBefore = layouts(story);
        QProcess watcher;
        QVERIFY(story.windows().startWatching(watcher));
        QVERIFY(story.windows().playSessionEvent(QStringLiteral("connect"), times));
        QElapsedTimer timer;
        timer.start();
        while (layouts(story) < layoutsBefore + times || timer.elapsed() < 1000) {
            QVERIFY(timer.elapsed() < 60000);
            const QImage now = story.windows().screen();
            if (now != before)
                now.save(QStringLiteral("%1/flicker-%2.png").arg(WineSession::evidence(), name));
            QCOMPARE(now, before);
        }
        const QStringList changes = story.windows().stopWatching(watcher);
        QCOMPARE(changes.filter(QRegularExpression(QStringLiteral("\\t(quillet|ledger|mail)\\.exe\\t"))),
                 QStringList());
        QCOMPARE(windows(story), windowsBefore);
        QCOMPARE(story.look(name + QStringLiteral("-after")), before);
    }

private slots:
    // Home at noon, back in the afternoon at a smaller screen, then at a larger one.
    void aSuspendedSessionIsFoundUnchangedOnAnotherScreen()
    {
        ShellStory story(QStringLiteral("suspension"));
        story.publish(ledger, teal, {"--title", "Ledger"});
        story.publish(mail, leaf, {"--title", "Mail"});
        QVERIFY(story.start());
        QVERIFY(story.launchAndWait(ledger, QStringLiteral("Ledger"), 1));
        QVERIFY(story.showLauncher());
        QVERIFY(story.launchAndWait(mail, QStringLiteral("Mail"), 2));
        const QStringList before = windows(story);
        story.click(story.logOffButton());
        QVERIFY(story.waitForFront(shellProgram, QStringLiteral("Suspend session")));
        story.windows().press(QStringLiteral("Return"));
        QTRY_COMPARE_WITH_TIMEOUT(story.windows().disconnections(),
                                  QStringList("server 0, session -1, wait 0"), 60000);
        QTRY_COMPARE_WITH_TIMEOUT(windows(story), before, 60000);

        for (const QSize& size : {QSize(1024, 768), QSize(1600, 1200)}) {
            const QString name = QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
            QVERIFY(story.windows().resizeScreen(size.width(), size.height()));
            QVERIFY(story.windows().playSessionEvent(QStringLiteral("connect")));
            QVERIFY(story.waitForTaskButtons(2));
            QVERIFY(story.waitForFront(ShellStory::program(mail), QStringLiteral("Mail")));
            QVERIFY(story.waitForColour(leaf));
            story.look(name + QStringLiteral("-mail"));
            QVERIFY(story.showLauncher());
            QCOMPARE(story.front().frame, story.page());
            story.look(name + QStringLiteral("-launcher"));
            story.click(story.fixedButton(2));
            QTRY_COMPARE_WITH_TIMEOUT(
                windows(story).filter(QStringLiteral("quillet.exe quillet 0,0 ")).size(), 2, 60000);
            QCOMPARE(story.front().frame, story.page());
            story.look(name + QStringLiteral("-configuration"));
            story.click(story.taskButton(1, 2));
            QVERIFY(story.waitForFront(ShellStory::program(mail), QStringLiteral("Mail")));
        }
        QCOMPARE(story.startsAndEnds(), QStringList({"start ledger", "start mail"}));
        QVERIFY(!story.server().requests().contains("end_session"));
        QCOMPARE(story.warnings(), QStringList());
    }

    // Somebody else reconnects, five times: whatever is in view stays as it is, at every moment.
    void aReconnectionOfSomebodyElseIsNotSeen()
    {
        ShellStory story(QStringLiteral("somebody-else"));
        story.publish(ledger, teal, {"--title", "Ledger"});
        QVERIFY(story.start());
        verifyNothingFlickers(story, QStringLiteral("launcher"));
        QVERIFY(story.launchAndWait(ledger, QStringLiteral("Ledger"), 1));
        verifyNothingFlickers(story, QStringLiteral("program"));
        for (int i = 1; i <= 2; ++i) {
            story.click(story.fixedButton(i));
            QVERIFY(story.waitForPage());
            verifyNothingFlickers(story, i == 1 ? QStringLiteral("places") : QStringLiteral("configuration"));
        }
        QCOMPARE(story.warnings(), QStringList());
    }

    // The server goes in the middle: programs are started and closed all the same, and nothing waits long.
    void theServerGoesInTheMiddle()
    {
        ShellStory story(QStringLiteral("server-gone"));
        story.publish(ledger, teal, {"--title", "Ledger"});
        story.publish(mail, leaf, {"--title", "Mail"});
        QVERIFY(story.start());
        QVERIFY(story.launchAndWait(ledger, QStringLiteral("Ledger"), 1));
        story.server().stop();
        QVERIFY(story.showLauncher());
        QElapsedTimer timer;
        timer.start();
        QVERIFY(story.launchAndWait(mail, QStringLiteral("Mail"), 2));
        QVERIFY2(timer.elapsed() < 15000, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(story.windows().killProgram(ShellStory::program(ledger)));
        QVERIFY(story.waitForTaskButtons(1));
        QVERIFY(story.windows().killProgram(ShellStory::program(mail)));
        QVERIFY(story.waitForTaskButtons(0));
        QVERIFY(story.waitForPage());
        story.look(QStringLiteral("launcher"));
        QCOMPARE(story.startsAndEnds(), QStringList("start ledger"));
        timer.start();
        story.click(story.logOffButton());
        QVERIFY(story.waitForLogOff());
        QVERIFY2(timer.elapsed() < 15000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(story.warnings(), QStringList());
    }

    // An administrator logs the user off while a page is shown.
    void aLogOffThatWindowsAsksForEndsTheShell()
    {
        ShellStory story(QStringLiteral("log-off"));
        QVERIFY(story.start());
        story.click(story.fixedButton(2));
        QVERIFY(story.waitForPage());
        QProcess logOff;
        story.windows().start(logOff, QStringLiteral("wineboot"), {"--end-session"});
        QVERIFY(story.waitForLogOff());
        QVERIFY(logOff.waitForFinished(60000));
        QCOMPARE(logOff.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(SessionStory)
#include "tst_session.moc"
