// The windows of a session of the shipped shell: those of programs, many of them, and the shell's own.
#include "support/shellstory.h"

#include <QtTest>

namespace {

const QColor teal("#12566b");
const QColor leaf("#5b9a5b");
const QString many = QStringLiteral("many");
const QString single = QStringLiteral("single");
const QString shellProgram = QStringLiteral("quillet.exe");

} // namespace

class WindowsStory : public QObject
{
    Q_OBJECT

    // The titles of the windows that got a button, in the order of the buttons.
    static QStringList attached(const ShellStory& story)
    {
        static const QRegularExpression form(QStringLiteral("Attaching window (.*) \\(desktop size"));
        QStringList titles;
        for (const QString& line : story.debug()) {
            const QRegularExpressionMatch match = form.match(line);
            if (match.hasMatch())
                titles.append(match.captured(1));
        }
        return titles;
    }

    // The shell's windows, "title x,y widthxheight state".
    static QStringList ownWindows(ShellStory& story)
    {
        QStringList list;
        for (const WineWindow& window : story.windows().windowList()) {
            if (window.program == shellProgram)
                list.append(QStringLiteral("%1 %2,%3 %4x%5 %6")
                                .arg(window.title)
                                .arg(window.frame.x())
                                .arg(window.frame.y())
                                .arg(window.frame.width())
                                .arg(window.frame.height())
                                .arg(window.state));
        }
        return list;
    }

private slots:
    // A narrow screen with more windows than the bar has room for; then their program is killed.
    void thirteenWindowsAreScrolledAndTheirProgramIsKilled()
    {
        const int count = 13;
        ShellStory story(QStringLiteral("thirteen"), 1024, 768);
        QStringList options = {"--title", "Window 1"};
        for (int i = 2; i <= count; ++i)
            options << QStringLiteral("--window") << QStringLiteral("Window %1").arg(i);
        story.publish(many, teal, options);
        story.publish(single, leaf, {"--title", "Single"});
        QVERIFY(story.start());
        story.launch(many);
        QTRY_COMPARE_WITH_TIMEOUT(attached(story).size(), count, 60000);
        QVERIFY(story.waitForTaskButtons(count));
        QVERIFY(story.waitForArrow());
        const QImage end = story.look(QStringLiteral("end-of-the-list"));
        const QStringList titles = attached(story);

        // The last eleven are seen; a press of an arrow moves them by one.
        const auto pressFirst = [&](const QString& title) {
            story.click(story.taskButton(0, count));
            return story.waitForFront(ShellStory::program(many), title);
        };
        const QRect arrows(QPoint(story.leftArrow().x() - 12, story.bar().top()), QSize(24, 42));
        QVERIFY(pressFirst(titles.at(2)));
        story.click(story.leftArrow());
        QVERIFY(pressFirst(titles.at(1)));
        story.look(QStringLiteral("middle"));
        story.click(story.leftArrow());
        QVERIFY(pressFirst(titles.at(0)));
        story.look(QStringLiteral("start-of-the-list"));
        // No further: the arrow is disabled.
        story.click(story.leftArrow());
        story.click(story.taskButton(10, count));
        QVERIFY(story.waitForFront(ShellStory::program(many), titles.at(10)));
        for (int i = 1; i <= 2; ++i) {
            story.click(story.rightArrow(count));
            QVERIFY(pressFirst(titles.at(i)));
        }
        story.click(story.rightArrow(count));
        QVERIFY(pressFirst(titles.at(2)));
        story.windows().moveTo(story.page().center().x(), story.page().center().y());
        QTRY_COMPARE_WITH_TIMEOUT(story.windows().screen().copy(arrows), end.copy(arrows), 60000);

        // On a wider screen all fit; back on this one the bar is no wider than it.
        QVERIFY(story.windows().resizeScreen(1280, 800));
        QVERIFY(story.waitForTaskButtons(count));
        story.look(QStringLiteral("wider"));
        QVERIFY(story.windows().resizeScreen(1024, 768));
        QVERIFY(story.waitForTaskButtons(count));
        QCOMPARE(ownWindows(story).first(), QStringLiteral("quillet 0,726 1024x42 normal"));

        // Killed: every button goes, and the other program's window is there.
        QVERIFY(story.showLauncher());
        story.launch(single);
        QTRY_COMPARE_WITH_TIMEOUT(attached(story).size(), count + 1, 60000);
        QVERIFY(story.windows().killProgram(ShellStory::program(many)));
        QVERIFY(story.waitForTaskButtons(1));
        QVERIFY(story.waitForFront(ShellStory::program(single), QStringLiteral("Single")));
        QVERIFY(story.waitForColour(leaf));
        QTRY_COMPARE_WITH_TIMEOUT(story.startsAndEnds(),
                                  QStringList({"start many", "start single", "end many"}), 60000);
        QCOMPARE(ownWindows(story).first(), QStringLiteral("quillet 0,726 1024x42 normal"));
        story.look(QStringLiteral("killed"));
        QVERIFY(story.windows().killProgram(ShellStory::program(single)));
        QVERIFY(story.waitForTaskButtons(0));
        QVERIFY(story.waitForPage());
        QCOMPARE(story.warnings(), QStringList());
    }

    // Pages, the bar, and a box that is left open for ten looks of the tracker.
    void noWindowOfTheShellIsAttachedOrMaximised()
    {
        ShellStory story(QStringLiteral("own"));
        story.publish(single, leaf, {"--title", "Single"});
        QVERIFY(story.start());
        QVERIFY(story.launchAndWait(single, QStringLiteral("Single"), 1));
        const QString bar = QStringLiteral("quillet 0,758 1280x42 normal");
        const QString page = QStringLiteral("quillet 0,0 1280x758 normal");
        QCOMPARE(ownWindows(story), QStringList({bar, page}));

        const char* const names[] = {"launcher", "places", "configuration"};
        for (int i = 0; i < 3; ++i) {
            story.click(story.fixedButton(i));
            QVERIFY(story.waitForPage());
            QTest::qWait(700); // two looks of the tracker
            story.look(QLatin1String(names[i]));
        }
        // What the user would close a window with does not close a page, nor the bar.
        story.windows().press(QStringLiteral("alt+F4"));
        QTest::qWait(700);
        QCOMPARE(ownWindows(story), QStringList({bar, page, page, page}));
        QVERIFY(story.waitForTaskButtons(1));

        story.click(story.taskButton(0, 1));
        QVERIFY(story.waitForFront(ShellStory::program(single), QStringLiteral("Single")));
        story.click(story.logOffButton());
        QVERIFY(story.waitForFront(shellProgram, QStringLiteral("Suspend session")));
        const QStringList with = ownWindows(story);
        QCOMPARE(with.filter(QStringLiteral("Suspend session ")).size(), 1);
        QVERIFY(!with.join('\n').contains(QStringLiteral("maximised")));
        QTest::qWait(3300); // ten looks
        story.look(QStringLiteral("box"));
        QCOMPARE(ownWindows(story), with);
        QVERIFY(story.waitForTaskButtons(1));
        story.windows().press(QStringLiteral("Return")); // suspends
        QTRY_COMPARE_WITH_TIMEOUT(story.windows().disconnections().size(), 1, 60000);
        QTRY_COMPARE_WITH_TIMEOUT(ownWindows(story), QStringList({bar, page, page, page}), 60000);
        QCOMPARE(attached(story), QStringList("Single"));
        QCOMPARE(story.warnings(), QStringList());
    }
};

QTEST_GUILESS_MAIN(WindowsStory)
#include "tst_windows.moc"
