// The controller: windows that come, go and change, and the pages.
#include "config/configure.h"
#include "files/filesystemwidget.h"
#include "instances/appinstance.h"
#include "session/screensize.h"
#include "shell/menu.h"
#include "shell/threadbutton.h"
#include "support/shelltest.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QFocusEvent>
#include <QLineEdit>
#include <QListView>
#include <QSet>
#include <QtTest>

namespace {

// Without the frame that the offscreen platform gives every window.
QRect placeOf(const QWidget* widget)
{
    return QRect(widget->pos(), widget->size());
}

} // namespace

class TasksTest : public ShellTest
{
    Q_OBJECT

private slots:
    // --- Windows that come

    void aNewWindowGetsAButtonOfTheLaunch()
    {
        addProbe("icon=kcalc.png\n");
        startShell();
        const auto app = instance();
        desktop().launchApplication(app.get());
        simwin::setCurrentWindowProcess(7777);
        const qlonglong window = openWindow(QStringLiteral("Calculator - 1"));
        clearDebugOutput();
        desktop().mapWindow(window);
        QCOMPARE(bar().count(), 4);
        const ThreadButton* const button = bar().buttonAt(3);
        QCOMPARE(button->kind(), 2);
        QCOMPARE(button->name(), QStringLiteral("probe"));
        QCOMPARE(button->taskText(), QStringLiteral("probe"));
        QCOMPARE(button->windowId(), window);
        QCOMPARE(button->processId(), 7777u);
        QCOMPARE(button->further(), 0u);
        QVERIFY(!button->widget());
        QCOMPARE(button->picture().toImage(),
                 QIcon(QStringLiteral(":/icons/applications/kcalc.png")).pixmap(48, 42).toImage());
        QCOMPARE(current(), 3);
        QCOMPARE(shell().panelName(), QStringLiteral("probe"));
        QCOMPARE(shell().panelText(), QStringLiteral("Calculator - 1"));
        QVERIFY(!isWaiting());
        const QStringList lines = debugOutput();
        QCOMPARE(lines.value(0), QStringLiteral("Index of window %1 is -1").arg(window));
        const QSize size = session::desktopSize();
        QCOMPARE(lines.value(1), QStringLiteral("Attaching window Calculator - 1 (desktop size: %1x%2)")
                                     .arg(size.width())
                                     .arg(size.height() - 42));
    }

    void aNewWindowIsBroughtToTheFrontMaximised()
    {
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        const QStringList made = windowCalls().filter('(' + hex(window));
        QCOMPARE(made.mid(0, 3), QStringList({QStringLiteral("ShowWindow(%1, 5)").arg(hex(window)),
                                              QStringLiteral("BringWindowToTop(%1)").arg(hex(window)),
                                              QStringLiteral("ShowWindow(%1, 3)").arg(hex(window))}));
    }

    void withTheStandardBehaviourWindowsAreNotMaximised()
    {
        sandbox().writeSettings("[Desktop]\nWindowManagerBehaviour=standard\n");
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        desktop().mapWindow(window);
        desktop().setSelected(3);
        desktop().closeButtonClicked(window);
        const QStringList shown = windowCalls().filter(QStringLiteral("ShowWindow(%1,").arg(hex(window)));
        QVERIFY(shown.size() >= 4);
        QCOMPARE(QSet<QString>(shown.begin(), shown.end()),
                 QSet<QString>({QStringLiteral("ShowWindow(%1, 5)").arg(hex(window))}));
    }

    void aWindowWithoutALaunchGetsTheDefaultPicture()
    {
        startShell();
        attach(QStringLiteral("letter"));
        QCOMPARE(bar().buttonAt(3)->picture().toImage(),
                 QIcon(QStringLiteral(":/icons/applications/default.png")).pixmap(48, 42).toImage());
        QCOMPARE(bar().buttonAt(3)->name(), QString());
    }

    void windowsOfTheSameLaunchShareTheirPicture()
    {
        startShell();
        attach(QStringLiteral("letter"));
        attach(QStringLiteral("another"));
        QCOMPARE(bar().buttonAt(4)->picture().cacheKey(), bar().buttonAt(3)->picture().cacheKey());
    }

    void theTimerRunsOnWhenTheWindowHasCome()
    {
        addProbe();
        startShell();
        const auto app = instance();
        desktop().launchApplication(app.get());
        attach(QStringLiteral("letter"));
        QVERIFY(!isWaiting());
        QApplication::desktop()->setCursor(Qt::WaitCursor);
        desktop().launchApplication(app.get()); // ignored: cursor and timer
        QCOMPARE(log().filter(QStringLiteral("Launching application")).size(), 1);
    }

    void windowsThatAreNoApplicationsAreNotTaken_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<uint>("style");
        QTest::addColumn<uint>("extendedStyle");
        QTest::newRow("tool window") << "tools" << uint(WS_OVERLAPPEDWINDOW | WS_VISIBLE)
                                     << uint(WS_EX_TOOLWINDOW);
        QTest::newRow("bare window") << "bare" << uint(WS_VISIBLE) << 0u;
        QTest::newRow("one of the shell's name") << "quillet" << uint(WS_OVERLAPPEDWINDOW | WS_VISIBLE) << 0u;
    }
    void windowsThatAreNoApplicationsAreNotTaken()
    {
        QFETCH(QString, title);
        QFETCH(uint, style);
        QFETCH(uint, extendedStyle);
        startShell();
        simwin::setRecording(false);
        const qlonglong window = openWindow(title, style, extendedStyle);
        simwin::setRecording(true);
        const int before = windowCalls().size();
        desktop().mapWindow(window);
        QCOMPARE(bar().count(), 3);
        QCOMPARE(current(), 0);
        QCOMPARE(windowCalls().size(), before);
        QCOMPARE(debugOutput(), QStringList(QStringLiteral("Index of window %1 is -1").arg(window)));
    }

    void windowsOfThisProcessAreNotTaken()
    {
        startShell();
        simwin::setCurrentWindowProcess(GetCurrentProcessId());
        const qlonglong window = openWindow(QStringLiteral("Suspend session"));
        desktop().mapWindow(window);
        QCOMPARE(bar().count(), 3);
        QVERIFY(windowCalls().filter('(' + hex(window)).isEmpty());
    }

    void theShellsTitleMustBeTheWholeTitle()
    {
        startShell();
        attach(QStringLiteral("quillet.txt - Editor"));
        attach(QStringLiteral("Quillet"));
        attach(QString());
        QCOMPARE(bar().count(), 6);
    }

    void noWindowAndVanishedWindowsAreNotTaken()
    {
        startShell();
        const qlonglong window = openWindow(QStringLiteral("gone"));
        closeWindow(window);
        desktop().mapWindow(window);
        desktop().mapWindow(0);
        desktop().mapWindow(-1);
        QCOMPARE(bar().count(), 3);
    }

    void aWindowWithAButtonBecomesTheCurrentOneInFront()
    {
        startShell();
        const qlonglong first = attach(QStringLiteral("first"));
        attach(QStringLiteral("second"));
        QCOMPARE(current(), 4);
        const int before = windowCalls().size();
        clearDebugOutput();
        desktop().mapWindow(first);
        QCOMPARE(bar().count(), 5);
        QCOMPARE(current(), 3);
        QCOMPARE(debugOutput().value(0), QStringLiteral("Index of window %1 is 3").arg(first));
        QVERIFY(windowCalls().mid(before).contains(QStringLiteral("BringWindowToTop(%1)").arg(hex(first))));
        // Wanted: the button's own text comes last.
        QCOMPARE(shell().panelText(), bar().buttonAt(3)->taskText());
    }

    // The bar's news of the choice would do the same: without them it is the controller's own doing.
    void attachingAndShowingAWindowDoNotWaitForTheTaskBarsNews()
    {
        startShell();
        const QSignalBlocker silent(&bar());
        const qlonglong window = attach(QStringLiteral("letter"));
        const QString brought = QStringLiteral("BringWindowToTop(%1)").arg(hex(window));
        QCOMPARE(windowCalls().count(brought), 1);
        QCOMPARE(shell().panelText(), QStringLiteral("letter"));
        desktop().mapWindow(window);
        QCOMPARE(windowCalls().count(brought), 2);
        QCOMPARE(current(), 3);
    }

    void pressingATaskButtonShowsItsWindow()
    {
        startShell();
        const qlonglong first = attach(QStringLiteral("first"));
        attach(QStringLiteral("second"));
        const int before = windowCalls().size();
        bar().buttonAt(3)->click();
        QCOMPARE(current(), 3);
        QVERIFY(windowCalls().mid(before).contains(QStringLiteral("BringWindowToTop(%1)").arg(hex(first))));
    }

    void handlesThatDifferAbove32BitsAreTheSameWindow()
    {
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        desktop().mapWindow(window + (Q_INT64_C(1) << 32));
        QCOMPARE(bar().count(), 4);
        desktop().unmapWindow(window + (Q_INT64_C(5) << 32));
        QCOMPARE(bar().count(), 3);
    }

    // --- Windows that go

    void aWindowThatGoesLosesItsButton()
    {
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        closeWindow(window);
        clearDebugOutput();
        desktop().unmapWindow(window);
        QCOMPARE(bar().count(), 3);
        QCOMPARE(debugOutput().last(), QStringLiteral("Removed index 3"));
        QCOMPARE(simwin::openHandles(), 0);
    }

    void theProcessIsAskedWithoutWaiting_data()
    {
        QTest::addColumn<bool>("runs");
        QTest::newRow("it runs on") << true;
        QTest::newRow("it has ended") << false;
    }
    void theProcessIsAskedWithoutWaiting()
    {
        QFETCH(bool, runs);
        startShell();
        simwin::setProcessRuns(simwin::otherProcess, runs);
        const qlonglong window = attach(QStringLiteral("letter"));
        ShowWindow(handle(window), SW_HIDE); // hidden: its process is still known
        desktop().unmapWindow(window);
        const QStringList made = calls({"OpenProcess", "WaitForSingleObject", "CloseHandle"});
        QCOMPARE(made.size(), 3);
        QVERIFY2(made[0].startsWith(QStringLiteral("OpenProcess(100000, 0, ")), qPrintable(made[0]));
        QVERIFY2(made[0].endsWith(QStringLiteral("%1)").arg(simwin::otherProcess)), qPrintable(made[0]));
        QVERIFY2(made[1] == QStringLiteral("WaitForSingleObject(0)"), qPrintable(made[1]));
        QCOMPARE(bar().count(), 3); // in either case
        QCOMPARE(simwin::openHandles(), 0);
    }

    void unknownWindowsAndTheFixedButtonsStay()
    {
        startShell();
        attach(QStringLiteral("letter"));
        desktop().unmapWindow(0);
        desktop().unmapWindow(0x999999);
        desktop().unmapWindow(-1);
        desktop().unmapWindow(static_cast<qlonglong>(shell().fileManager()->winId()));
        QCOMPARE(bar().count(), 4);
    }

    void noWindowAsksForNoProcess()
    {
        startShell();
        desktop().unmapWindow(0);
        QVERIFY(calls({"OpenProcess"}).isEmpty());
    }

    // --- Titles

    void theCurrentWindowsNewTitleIsShown()
    {
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        clearDebugOutput();
        desktop().titleChanged(window, QStringLiteral("letter *"));
        QCOMPARE(shell().panelText(), QStringLiteral("letter *"));
        QCOMPARE(debugOutput(), QStringList("Title changed!!! to letter *"));
    }

    void otherWindowsTitlesAreNotShown()
    {
        startShell();
        const qlonglong first = attach(QStringLiteral("first"));
        attach(QStringLiteral("second"));
        clearDebugOutput();
        desktop().titleChanged(first, QStringLiteral("first *"));
        desktop().titleChanged(0x999999, QStringLiteral("nobody's"));
        QCOMPARE(shell().panelText(), QStringLiteral("second"));
        QCOMPARE(debugOutput(),
                 QStringList({"Title changed!!! to first *",
                              "Not current title, as current index is 4 and window index is 3",
                              "Title changed!!! to nobody's",
                              "Not current title, as current index is 4 and window index is -1"}));
    }

    void theTitleOfAWindowWithAButtonIsRead()
    {
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        SetWindowTextW(handle(window), L"other");
        desktop().setThreadWidgetTitle(window);
        QCOMPARE(shell().panelText(), QStringLiteral("other"));
        desktop().setThreadWidgetTitle(-1);
        desktop().setThreadWidgetTitle(0);
        desktop().setThreadWidgetTitle(0x999999);
        QCOMPARE(shell().panelText(), QStringLiteral("other"));
    }

    void aNegativeHandleHasNoTitle()
    {
        startShell();
        simwin::setNextHandle(0x80001234);
        const qlonglong window = attach(QStringLiteral("letter"));
        QCOMPARE(window, Q_INT64_C(0x80001234));
        bar().setCurrentThreadText(QStringLiteral("text"));
        desktop().setThreadWidgetTitle(static_cast<qint32>(window)); // the same low 32 bits
        QCOMPARE(shell().panelText(), QStringLiteral("text"));
    }

    void theNameOfAButtonAndTheTextOfAWindowsAreShown()
    {
        startShell();
        attach(QStringLiteral("letter"));
        bar().setCurrentThreadText(QStringLiteral("text"));
        desktop().setThreadWidgetName(0); // no window
        QCOMPARE(shell().panelName(), QStringLiteral("Tidewell"));
        QCOMPARE(shell().panelText(), QStringLiteral("text"));
        desktop().setThreadWidgetName(1);
        QCOMPARE(shell().panelText(), QStringLiteral("Places"));
        desktop().setThreadWidgetName(3);
        QCOMPARE(shell().panelName(), QString());
        QCOMPARE(shell().panelText(), QString());
        bar().setCurrentThreadText(QStringLiteral("text"));
        desktop().setThreadWidgetName(-1);
        desktop().setThreadWidgetName(4);
        QCOMPARE(shell().panelText(), QStringLiteral("text"));
    }

    void aSelectedWindowIsNamedTitledAndBroughtToTheFront()
    {
        startShell();
        const qlonglong first = attach(QStringLiteral("first"));
        attach(QStringLiteral("second"));
        const int before = windowCalls().size();
        clearDebugOutput();
        desktop().setSelected(3);
        QCOMPARE(shell().panelText(), QStringLiteral("first"));
        QCOMPARE(debugOutput(),
                 QStringList(QStringLiteral("Setting selected index: -1, window: %1, ").arg(first)));
        QCOMPARE(windowCalls().mid(before),
                 QStringList({QStringLiteral("ShowWindow(%1, 5)").arg(hex(first)),
                              QStringLiteral("BringWindowToTop(%1)").arg(hex(first)),
                              QStringLiteral("ShowWindow(%1, 3)").arg(hex(first))}));
        desktop().setSelected(-1);
        desktop().setSelected(9);
        QCOMPARE(windowCalls().size(), before + 3);
    }

    // --- Buttons of the task panel

    void theCloseButtonAsksTheWindowAndShowsIt()
    {
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        const int before = windowCalls().size();
        desktop().closeButtonClicked(window);
        QCOMPARE(windowCalls().mid(before),
                 QStringList({QStringLiteral("PostMessageW(%1, 112, f060, 0)").arg(hex(window)),
                              QStringLiteral("ShowWindow(%1, 5)").arg(hex(window)),
                              QStringLiteral("BringWindowToTop(%1)").arg(hex(window)),
                              QStringLiteral("ShowWindow(%1, 3)").arg(hex(window))}));
    }

    void theKillButtonTellsTheWindowToQuit()
    {
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        const int before = windowCalls().size();
        desktop().killButtonClicked(window);
        QCOMPARE(windowCalls().mid(before),
                 QStringList(QStringLiteral("PostMessageW(%1, 12, 0, 0)").arg(hex(window))));
    }

    // --- Pages

    void aPageIsShownAboveTheTaskBar()
    {
        startShell();
        clearDebugOutput();
        desktop().mapWidget(shell().configuration());
        const QWidget* const page = shell().configuration();
        const QSize size = session::desktopSize() - QSize(0, 42);
        QCOMPARE(current(), 2);
        QVERIFY(page->isVisible());
        QCOMPARE(page->pos(), QPoint(0, 0));
        QCOMPARE(page->minimumSize(), size);
        QCOMPARE(page->maximumSize(), size);
        QCOMPARE(page->windowFlags() & ~Qt::WindowType_Mask,
                 Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
        QTRY_VERIFY(page->isActiveWindow());
        QCOMPARE(shell().panelName(), QStringLiteral("Tidewell"));
        QCOMPARE(shell().panelText(), QStringLiteral("Configuration"));
        const QStringList lines = debugOutput();
        QCOMPARE(lines.mid(0, 3),
                 QStringList({"Mapping widget...", "Index: 2", "Setting current index to 2"}));
        QCOMPARE(lines.last(), QStringLiteral("Widget size: %1x%2").arg(size.width()).arg(size.height()));
    }

    void theFileManagersPageOpensWithTheKeyboardInItsFolder()
    {
        startShell();
        auto* const view = shell().fileManager()->findChild<QListView*>(QStringLiteral("iconView"));
        for (int round = 0; round < 2; ++round) {
            desktop().mapWidget(shell().fileManager());
            QTRY_COMPARE(QApplication::focusWidget(), view);
            desktop().mapWidget(shell().launcher());
            QTRY_VERIFY(shell().launcher()->isActiveWindow());
        }
    }

    void everyPagesTextStandsForItsTitle()
    {
        startShell();
        const QPair<QWidget*, const char*> pages[] = {{shell().fileManager(), "Places"},
                                                      {shell().configuration(), "Configuration"},
                                                      {shell().launcher(), "Desktop"}};
        for (const auto& page : pages) {
            desktop().mapWidget(page.first);
            QCOMPARE(shell().panelText(), QString::fromLatin1(page.second));
        }
    }

    void thePagesTextStandsAlsoWhenItsWindowsTitleIsAskedForOrChanges()
    {
        startShell();
        desktop().mapWidget(shell().fileManager());
        const auto window = static_cast<qlonglong>(shell().fileManager()->winId());
        bar().setCurrentThreadText(QStringLiteral("text"));
        desktop().setThreadWidgetTitle(window);
        QCOMPARE(shell().panelText(), QStringLiteral("Places"));
        desktop().titleChanged(window, QStringLiteral("quillet"));
        QCOMPARE(shell().panelText(), QStringLiteral("Places"));
    }

    void pressingAFixedButtonShowsItsPage()
    {
        startShell();
        bar().buttonAt(1)->click();
        QVERIFY(shell().fileManager()->isVisible());
        QCOMPARE(current(), 1);
        bar().buttonAt(0)->click();
        QCOMPARE(current(), 0);
    }

    void thePageInViewIsNotShownAgainUnlessForced()
    {
        startShell();
        desktop().mapWidget(shell().configuration());
        clearDebugOutput();
        desktop().mapWidget(shell().configuration(), false);
        QCOMPARE(debugOutput(), QStringList({"Mapping widget...", "Index: 2"}));
        shell().configuration()->hide();
        desktop().mapWidget(shell().configuration(), true);
        QVERIFY(shell().configuration()->isVisible());
    }

    void aWidgetWithoutAButtonIsShownOnlyWhenForced()
    {
        startShell();
        QWidget tool;
        desktop().mapWidget(&tool);
        QVERIFY(!tool.isVisible());
        desktop().mapWidget(&tool, true);
        QVERIFY(tool.isVisible());
        QCOMPARE(tool.size(), session::desktopSize() - QSize(0, 42));
        QCOMPARE(tool.windowFlags() & ~Qt::WindowType_Mask,
                 Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
        QCOMPARE(current(), 0); // no button of its own
        desktop().mapWidget(nullptr, true);
    }

    void aPageInTheBackgroundComesForward()
    {
        startShell();
        QWidget tool;
        QWidget other;
        desktop().mapWidget(&tool, true);
        other.show();
        other.activateWindow();
        QTRY_VERIFY(other.isActiveWindow());
        desktop().mapWidget(&tool, true);
        QTRY_VERIFY(tool.isActiveWindow());
    }

    void aPageThatIsShownTakesTheFocusForItself()
    {
        startShell();
        QWidget tool;
        QLineEdit field(&tool);
        desktop().mapWidget(&tool, true);
        QTRY_VERIFY(tool.isActiveWindow());
        field.setFocus();
        QVERIFY(field.hasFocus());
        struct : QObject
        {
            QList<Qt::FocusReason> reasons;
            bool eventFilter(QObject*, QEvent* event) override
            {
                if (event->type() == QEvent::FocusIn)
                    reasons.append(static_cast<QFocusEvent*>(event)->reason());
                return false;
            }
        } watcher;
        tool.installEventFilter(&watcher);
        desktop().mapWidget(&tool, true);
        QVERIFY(tool.hasFocus());
        QCOMPARE(watcher.reasons, QList<Qt::FocusReason>({Qt::OtherFocusReason}));
    }

    void aPageThatIsShownAgainIsNotHiddenInBetween()
    {
        startShell();
        struct : QObject
        {
            int hides = 0;
            bool eventFilter(QObject*, QEvent* event) override
            {
                hides += event->type() == QEvent::Hide;
                return false;
            }
        } watcher;
        shell().launcher()->installEventFilter(&watcher);
        desktop().mapWidget(shell().launcher(), true);
        desktop().resize();
        QCOMPARE(watcher.hides, 0);
    }

    void aPageIsNeverMaximised()
    {
        startShell();
        desktop().mapWidget(shell().fileManager());
        desktop().mapWindow(static_cast<qlonglong>(shell().fileManager()->winId())); // as the tracker tells
        bar().refresh();
        QCOMPARE(current(), 1);
        QVERIFY(
            windowCalls().filter(QRegularExpression(QStringLiteral("ShowWindow\\(\\w+, 3\\)"))).isEmpty());
        QCOMPARE(placeOf(shell().fileManager()), QRect(QPoint(0, 0), session::desktopSize() - QSize(0, 42)));
    }

    void aMaximisedPageGoesBackToItsPlace()
    {
        startShell();
        desktop().mapWidget(shell().fileManager());
        shell().fileManager()->setWindowState(Qt::WindowMaximized);
        bar().refresh();
        QVERIFY(!shell().fileManager()->isMaximized());
        QCOMPARE(placeOf(shell().fileManager()), QRect(QPoint(0, 0), session::desktopSize() - QSize(0, 42)));
    }
};

QTEST_MAIN(TasksTest)
#include "tst_tasks.moc"
