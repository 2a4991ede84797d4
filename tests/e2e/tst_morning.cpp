// A whole session of the shipped shell, as its user lives it.
#include "support/shellstory.h"

#include <QtTest>

namespace {

const QColor teal("#12566b");
const QColor sand("#f2e3c6");
const QColor leaf("#5b9a5b");

} // namespace

class MorningStory : public QObject
{
    Q_OBJECT

private slots:
    // A clerk logs in, works with three programs, closes two of them in two ways, and goes home.
    void aWorkingMorning()
    {
        ShellStory story(QStringLiteral("morning"));
        story.publish(QStringLiteral("ledger"), teal, {"--title", "Ledger", "--ask"});
        story.publish(QStringLiteral("letters"), sand, {"--title", "Letters"});
        story.publish(QStringLiteral("mail"), leaf, {"--title", "Mail"});
        WineSession& windows = story.windows();
        QVERIFY(story.startWithPassword());
        windows.type(QStringLiteral("tide"));
        windows.press(QStringLiteral("Return"));
        QVERIFY(story.waitForLauncher());
        story.look(QStringLiteral("launcher"));

        QVERIFY(story.launchAndWait(QStringLiteral("ledger"), QStringLiteral("Ledger"), 1));
        story.look(QStringLiteral("one"));
        QVERIFY(story.showLauncher());
        story.look(QStringLiteral("launcher-again"));
        QVERIFY(story.launchAndWait(QStringLiteral("letters"), QStringLiteral("Letters"), 2));
        QVERIFY(story.showLauncher());
        QVERIFY(story.launchAndWait(QStringLiteral("mail"), QStringLiteral("Mail"), 3));
        story.look(QStringLiteral("three"));

        // The window in front has the keyboard.
        QVERIFY(story.hasKeyboard(QStringLiteral("mail")));
        story.click(story.taskButton(0, 3));
        QVERIFY(story.waitForFront(QStringLiteral("ledger.exe"), QStringLiteral("Ledger")));
        QVERIFY(story.waitForColour(teal));
        QVERIFY(story.hasKeyboard(QStringLiteral("ledger")));
        story.click(story.taskButton(1, 3));
        QVERIFY(story.waitForFront(QStringLiteral("letters.exe"), QStringLiteral("Letters")));
        QVERIFY(story.waitForColour(sand));
        story.look(QStringLiteral("letters"));

        // Its own close button, in its corner.
        story.click(QPoint(story.page().right() - 10, 8));
        QVERIFY(story.waitForEvidence(QStringLiteral("letters"), QStringLiteral("ended 0")));
        QVERIFY(story.waitForTaskButtons(2));
        story.look(QStringLiteral("two"));

        // The panel's, and a question.
        story.click(story.taskButton(0, 2));
        QVERIFY(story.waitForColour(teal));
        story.click(story.panelCloseButton());
        QVERIFY(story.waitForEvidence(QStringLiteral("ledger"), QStringLiteral("close asked")));
        QVERIFY(story.waitForTaskButtons(3)); // another program's box is a window like any other
        QVERIFY(story.waitForFront(QStringLiteral("ledger.exe"), QStringLiteral("Ledger")));
        QCOMPARE(story.front().windowClass, QStringLiteral("#32770"));
        story.look(QStringLiteral("save"));
        windows.press(QStringLiteral("Return"));
        QVERIFY(story.waitForEvidence(QStringLiteral("ledger"), QStringLiteral("answered yes")));
        QVERIFY(story.waitForTaskButtons(1));
        story.look(QStringLiteral("one-left"));

        story.click(story.logOffButton());
        QVERIFY(story.waitForFront(QStringLiteral("quillet.exe"), QStringLiteral("Suspend session")));
        story.look(QStringLiteral("question"));
        windows.press(QStringLiteral("alt+n"));
        QVERIFY(story.waitForLogOff());
        QVERIFY(story.waitForEvidence(QStringLiteral("mail"), QStringLiteral("session ends")));
        QCOMPARE(story.startsAndEnds(),
                 QStringList({"start ledger", "start letters", "start mail", "end letters", "end ledger"}));
        QCOMPARE(story.server().requests().mid(story.server().requests().size() - 2),
                 QList<QByteArray>({"end_session", "quit\n"}));
        QCOMPARE(story.log().last(), QStringLiteral("Info: Session ended"));
        QCOMPARE(windows.disconnections(), QStringList());
        QCOMPARE(story.warnings(), QStringList());
    }

    // No server is configured: nobody is asked, the built-in catalogue's programs are there, and nothing
    // keeps the user from leaving.
    void withoutAServer()
    {
        ShellStory story(QStringLiteral("alone"), 1024, 768);
        QVERIFY(story.startAlone());
        // Of the catalogue's programs, Wine has this one.
        QCOMPARE(story.log().filter(QStringLiteral("AppInstance. ")),
                 QStringList("Info: AppInstance. appName: notepad"));
        story.look(QStringLiteral("launcher"));
        story.click(QPoint(37, 37));
        QVERIFY(story.waitForFront(QStringLiteral("notepad.exe"), QStringLiteral("Untitled - Notepad")));
        QVERIFY(story.waitForTaskButtons(1));
        QVERIFY(story.waitForArrow());
        story.windows().type(QStringLiteral("Dear all"));
        QTest::qWait(500); // for the picture
        story.look(QStringLiteral("notepad"));
        QVERIFY(story.windows().killProgram(QStringLiteral("notepad.exe")));
        QVERIFY(story.waitForTaskButtons(0));
        QVERIFY(story.waitForPage());
        story.click(story.logOffButton());
        QVERIFY(story.waitForLogOff());
        QVERIFY(story.server().transcript().isEmpty());
        QVERIFY(story.log().filter(QStringLiteral("Error: ")).isEmpty());
        QCOMPARE(story.warnings(), QStringList());
    }
};

QTEST_GUILESS_MAIN(MorningStory)
#include "tst_morning.moc"
