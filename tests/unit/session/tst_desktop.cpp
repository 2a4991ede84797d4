// The controller: what it builds, whom it listens to, and how it ends.
#include "config/configure.h"
#include "env/serverslot.h"
#include "files/filesystemwidget.h"
#include "instances/appinstance.h"
#include "session/screensize.h"
#include "shell/menu.h"
#include "shell/threadbutton.h"
#include "support/ownmethods.h"
#include "support/shelltest.h"
#include "winapi/winmanager.h"

#include <wtsapi32.h>

#include <QApplication>
#include <QDesktopWidget>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <functional>

namespace {

// Without the frame that the offscreen platform gives every window.
QRect placeOf(const QWidget* widget)
{
    return QRect(widget->pos(), widget->size());
}

} // namespace

class DesktopTest : public ShellTest
{
    Q_OBJECT

private slots:
    // --- The class

    void signalsAndSlotsStandInTheirOrder()
    {
        QCOMPARE(ownMethods(Desktop::staticMetaObject), QStringList({"fileOpened()",
                                                                     "exitApp()",
                                                                     "launchApplication(AppInstance*)",
                                                                     "openFile(QString,QString)",
                                                                     "openFile(QString)",
                                                                     "openMime(QString,QString)",
                                                                     "timeout()",
                                                                     "resize(int)",
                                                                     "resize()",
                                                                     "clientConnected()",
                                                                     "setSelected(int)",
                                                                     "loadedFinished()",
                                                                     "setThreadWidgetName(int)",
                                                                     "setThreadWidgetTitle(qlonglong)",
                                                                     "connectToServer()",
                                                                     "mapWindow(qlonglong)",
                                                                     "mapNotify()",
                                                                     "unmapWindow(qlonglong)",
                                                                     "titleChanged(qlonglong,QString)",
                                                                     "mapWidget(QWidget*,bool)",
                                                                     "mapWidget(QWidget*)",
                                                                     "closeButtonClicked(qlonglong)",
                                                                     "killButtonClicked(qlonglong)"}));
    }

    // --- Construction

    void theScreenIsBuiltAboveTheTaskBar()
    {
        startShell();
        const QSize size = session::desktopSize();
        const QRect strip(0, size.height() - 42, size.width(), 42);
        QCOMPARE(placeOf(&bar()), strip);
        QVERIFY(bar().isVisible());
        const QRect page(0, 0, size.width(), size.height() - 42);
        QCOMPARE(shell().launcher()->size(), page.size());
        QVERIFY(shell().launcher()->isVisible());
        QVERIFY(!shell().fileManager()->isVisible());
        QVERIFY(!shell().configuration()->isVisible());
        QCOMPARE(placeOf(shell().fileManager()), page); // so that it is never seen at another size
        QCOMPARE(placeOf(shell().configuration()), page);
        QCOMPARE(current(), 0);
        QCOMPARE(shell().panelName(), QStringLiteral("Tidewell"));
        QCOMPARE(shell().panelText(), QStringLiteral("Desktop"));
        QVERIFY(!desktop().isLoading());
        QVERIFY(!desktop().currentProcess());
    }

    void theSystemsTaskBarHidesAndTheWorkAreaEndsAboveOurs()
    {
        startShell();
        const QSize size = session::desktopSize();
        const QStringList made = calls({"FindWindowW", "SHAppBarMessage", "SystemParametersInfoW"});
        QCOMPARE(made.value(0), QStringLiteral("FindWindowW(System_TrayWnd, )"));
        QCOMPARE(made.value(1), QStringLiteral("SHAppBarMessage(10, 48, 0, 1)"));
        QCOMPARE(made.value(2), QStringLiteral("SystemParametersInfoW(2f, 0, 0, 0, %1, %2, 2)")
                                    .arg(hex(size.width() - 1), hex(size.height() - 43)));
    }

    void theSystemTaskBarsWindowIsPassedOn()
    {
        simwin::setWindowOfClass(QStringLiteral("System_TrayWnd"), 0x1234);
        startShell();
        QCOMPARE(calls({"SHAppBarMessage"}).value(0), QStringLiteral("SHAppBarMessage(10, 48, 4660, 1)"));
        shell().desktop().exitApp();
        QCOMPARE(calls({"SHAppBarMessage"}).last(), QStringLiteral("SHAppBarMessage(10, 48, 4660, 2)"));
    }

    void bothThreadsRunWithTheirCreatorsPriority()
    {
        startShellWithTracker();
        QVERIFY(shell().tracker()->isRunning());
        QCOMPARE(shell().tracker()->priority(), QThread::InheritPriority);
        QTRY_VERIFY(simwin::callNames().contains("EnumWindows"));
        QTRY_VERIFY(simwin::callNames().contains("WTSWaitSystemEvent"));
    }

    void theTrackerStartsBetweenTheTaskBarsMakingAndItsShowing()
    {
        struct : QObject
        {
            QObject* controller = nullptr;
            QList<bool> runs; // as the bar gets its title, and as it is shown
            bool eventFilter(QObject* watched, QEvent* event) override
            {
                if (event->type() == QEvent::ChildAdded && watched->inherits("Desktop"))
                    controller = watched;
                else if (watched->inherits("TabBar") &&
                         (event->type() == QEvent::WindowTitleChange || event->type() == QEvent::Show))
                    runs.append(controller->findChild<WinManager*>()->isRunning());
                return false;
            }
        } watcher;
        qApp->installEventFilter(&watcher);
        startShell();
        qApp->removeEventFilter(&watcher);
        QCOMPARE(watcher.runs, QList<bool>({false, true}));
    }

    void aLoginThatFailsBuildsNothingAndEndsTheSession()
    {
        startServer();
        sandbox().writeToken("");
        answers().expectDialog("InitScreen", [](QWidget* dialog) {
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
        });
        startShellWithTracker();
        QVERIFY(!shell().bar());
        QVERIFY(!shell().tracker());
        QCOMPARE(simwin::callNames(), QList<QByteArray>({"FindWindowW", "SHAppBarMessage", "ExitWindowsEx"}));
        QCOMPARE(server().requests(), QList<QByteArray>({"end_session", "quit\n"}));
    }

    void afterALoginThatFailedTheEventLoopRunsOn()
    {
        startServer();
        sandbox().writeToken("");
        answers().expectDialog("InitScreen", [](QWidget* dialog) {
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
        });
        startShellWithTracker();
        bool stillRunning = false;
        QTimer::singleShot(300, [&] {
            stillRunning = true;
            QCoreApplication::exit(3);
        });
        QCOMPARE(QCoreApplication::exec(), 3);
        QVERIFY(stillRunning);
    }

    // --- Connections

    void aChangeOfTheDesktopsSizeLaysTheScreenOut()
    {
        startShell();
        const int before = calls({"SHAppBarMessage"}).size();
        QMetaObject::invokeMethod(QApplication::desktop(), "resized", Q_ARG(int, 7));
        QCOMPARE(calls({"SHAppBarMessage"}).size(), before + 1);
    }

    void aClientThatConnectsLaysTheScreenOut()
    {
        startShell();
        const int before = calls({"SHAppBarMessage"}).size();
        simwin::sessionEvent(WTS_EVENT_CONNECT);
        QTRY_COMPARE(calls({"SHAppBarMessage"}).size(), before + 1);
    }

    void theTrackersNewsReachTheController()
    {
        startShell();
        const qlonglong window = openWindow(QStringLiteral("letter"));
        emit shell().tracker()->mapWindow(window);
        QCOMPARE(shell().tasks(), QStringList("@" + hex(window)));
        emit shell().tracker()->titleChanged(window, QStringLiteral("letter, changed"));
        QCOMPARE(shell().panelText(), QStringLiteral("letter, changed"));
        emit shell().tracker()->unmapWindow(window);
        QCOMPARE(shell().tasks(), QStringList());
    }

    void theTaskBarsSignalsReachTheController()
    {
        addProbe();
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        emit bar().closeButtonClicked(window);
        QVERIFY(windowCalls().contains(QStringLiteral("PostMessageW(%1, 112, f060, 0)").arg(hex(window))));
        emit bar().killButtonClicked(window);
        QVERIFY(windowCalls().contains(QStringLiteral("PostMessageW(%1, 12, 0, 0)").arg(hex(window))));
        clearDebugOutput();
        emit bar().currentChanged(3);
        QVERIFY(
            debugOutput().contains(QStringLiteral("Setting selected index: -1, window: %1, ").arg(window)));
        emit bar().mapWidget(shell().configuration(), false);
        QVERIFY(shell().configuration()->isVisible());
        emit bar().openFile(QStringLiteral("/x.txt"), QStringLiteral("probe"));
        QVERIFY(isWaiting());
        desktop().timeout();
        const auto app = instance();
        emit bar().launchApplication(app.get());
        QVERIFY(isWaiting());
        expectSuspendQuestion(QMessageBox::Yes);
        emit bar().exitApp();
        QCOMPARE(calls({"WTSDisconnectSession"}).size(), 1);
    }

    // --- The screen's size

    void aReconnectionLeavesThePageInView()
    {
        startShell();
        desktop().mapWidget(shell().configuration());
        desktop().clientConnected();
        QCOMPARE(current(), 2);
        QVERIFY(shell().configuration()->isVisible());
        QCOMPARE(shell().panelText(), QStringLiteral("Configuration"));
    }

    void aReconnectionBringsTheCurrentWindowToTheFront()
    {
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        const int before = windowCalls().size();
        desktop().resize();
        QCOMPARE(current(), 3);
        QVERIFY(windowCalls().mid(before).contains(QStringLiteral("BringWindowToTop(%1)").arg(hex(window))));
    }

    void aNewLayoutShowsTheBarAndFitsThePages()
    {
        startShell();
        bar().hide();
        bar().setGeometry(5, 5, 100, 10);
        shell().launcher()->setFixedSize(10, 10);
        shell().fileManager()->setFixedSize(10, 10);
        desktop().resize(3);
        const QSize size = session::desktopSize();
        QVERIFY(bar().isVisible());
        QCOMPARE(placeOf(&bar()), QRect(0, size.height() - 42, size.width(), 42));
        QCOMPARE(shell().launcher()->size(), size - QSize(0, 42));
        QCOMPARE(shell().fileManager()->size(), size - QSize(0, 42));
    }

    // --- The end

    void withoutApplicationsTheSessionEndsWithoutAQuestion()
    {
        startShell();
        const QPointer<TabBar> shown(&bar());
        const QPointer<QWidget> page(shell().launcher());
        shell().powerButton()->click();
        QCOMPARE(exitCallsMade(), exitCalls());
        QVERIFY(shown && !shown->isVisible());
        QVERIFY(page && !page->isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!shown);
        QVERIFY(!page);
    }

    void suspendingDisconnectsAndChangesNothing()
    {
        startShell();
        attach(QStringLiteral("letter"));
        expectSuspendQuestion(QMessageBox::Yes);
        desktop().exitApp();
        QCOMPARE(calls({"WTSDisconnectSession"}), QStringList("WTSDisconnectSession(0, ffffffff, 0)"));
        QVERIFY(calls({"ExitWindowsEx"}).isEmpty());
        QCOMPARE(bar().count(), 4);
        QVERIFY(bar().isVisible());
    }

    void notSuspendingEndsTheSession()
    {
        startShell();
        attach(QStringLiteral("letter"));
        expectSuspendQuestion(QMessageBox::No);
        desktop().exitApp();
        QVERIFY(calls({"WTSDisconnectSession"}).isEmpty());
        QCOMPARE(exitCallsMade(), exitCalls());
    }

    void theServerIsToldBeforeWindowsIs()
    {
        startServer();
        startShell();
        QStringList exitCallsAtRequests;
        const TWClient* clientAtQuit = env::serverClient();
        server().onEvent = [&](const TwEvent& event) { // the shell waits meanwhile
            if (event.kind == TwEvent::Request)
                exitCallsAtRequests.append(calls({"ExitWindowsEx"}));
            if (event.kind == TwEvent::Request && event.bytes == "quit\n")
                clientAtQuit = env::serverClient();
        };
        QVERIFY(env::serverClient());
        desktop().exitApp();
        QVERIFY(!env::serverClient());
        QVERIFY(!clientAtQuit); // nobody finds a client that says good-bye
        QCOMPARE(server().requests().mid(server().requests().size() - 2),
                 QList<QByteArray>({"end_session", "quit\n"}));
        QVERIFY(exitCallsAtRequests.isEmpty());
        QCOMPARE(exitCallsMade(), exitCalls());
        QVERIFY(log().contains(QStringLiteral("Info: Session ended")));
    }

    void theClientIsGoneBeforeTheTaskBarIsAndTheTaskBarBeforeWindowsHears()
    {
        startServer();
        startShell();
        struct : QObject
        {
            std::function<void()> onClose;
            bool eventFilter(QObject*, QEvent* event) override
            {
                if (event->type() == QEvent::Close)
                    onClose();
                return false;
            }
        } watcher;
        int closed = 0;
        const int before = calls({"SHAppBarMessage"}).size();
        watcher.onClose = [&] {
            ++closed;
            QVERIFY(!env::serverClient());
            QCOMPARE(calls({"SHAppBarMessage"}).size(), before);
            QVERIFY(calls({"ExitWindowsEx"}).isEmpty());
        };
        bar().installEventFilter(&watcher);
        desktop().exitApp();
        QCOMPARE(closed, 1);
        QCOMPARE(exitCallsMade(), exitCalls());
    }

    void whileTheQuestionStandsWindowsComeAndGo_data()
    {
        QTest::addColumn<bool>("suspend");
        QTest::newRow("suspended") << true;
        QTest::newRow("ended") << false;
    }
    void whileTheQuestionStandsWindowsComeAndGo()
    {
        QFETCH(bool, suspend);
        startShell();
        const qlonglong first = attach(QStringLiteral("first"));
        const qlonglong second = attach(QStringLiteral("second"));
        const qlonglong third = openWindow(QStringLiteral("third"));
        int tasks = -1;
        answers().expectDialog("QMessageBox", [&](QWidget* question) {
            closeWindow(first);
            closeWindow(second);
            emit shell().tracker()->unmapWindow(second);
            emit shell().tracker()->unmapWindow(first);
            tasks = shell().tasks().size();
            emit shell().tracker()->mapWindow(third);
            emit shell().tracker()->titleChanged(third, QStringLiteral("third, changed"));
            desktop().clientConnected();
            auto* const box = static_cast<QMessageBox*>(question);
            box->button(suspend ? QMessageBox::Yes : QMessageBox::No)->click();
        });
        desktop().exitApp();
        QCOMPARE(tasks, 0);
        if (suspend) {
            QCOMPARE(calls({"WTSDisconnectSession"}).size(), 1);
            QVERIFY(calls({"ExitWindowsEx"}).isEmpty());
            QCOMPARE(shell().tasks(), QStringList("@" + hex(third)));
        } else {
            QVERIFY(calls({"WTSDisconnectSession"}).isEmpty());
            QCOMPARE(exitCallsMade(), exitCalls());
        }
    }

    void whileTheQuestionStandsItIsNotAskedAgain()
    {
        startShell();
        attach(QStringLiteral("letter"));
        answers().expectDialog("QMessageBox", [&](QWidget* question) {
            emit bar().exitApp();
            static_cast<QMessageBox*>(question)->button(QMessageBox::Yes)->click();
        });
        desktop().exitApp();
        QCOMPARE(calls({"WTSDisconnectSession"}).size(), 1);
        QVERIFY(calls({"ExitWindowsEx"}).isEmpty());
        expectSuspendQuestion(QMessageBox::No); // the next time it is
        desktop().exitApp();
        QCOMPARE(exitCallsMade(), exitCalls());
    }

    void theEndGoesOnWhenWindowsRefuses()
    {
        startShell();
        simwin::fail("SHAppBarMessage", ERROR_ACCESS_DENIED);
        simwin::fail("ExitWindowsEx", ERROR_ACCESS_DENIED);
        QWidget open; // so that the loop does not end with the last window
        open.show();
        const QObject patience;
        QTimer::singleShot(0, &desktop(), SLOT(exitApp()));
        QTimer::singleShot(5000, &patience, [] { QCoreApplication::exit(9); });
        QCOMPARE(QCoreApplication::exec(), 0);
        QCOMPARE(exitCallsMade(), exitCalls());
    }

    void newsThatComeAfterTheEndAreIgnored()
    {
        addProbe();
        startShell();
        const qlonglong window = attach(QStringLiteral("letter"));
        expectSuspendQuestion(QMessageBox::No);
        desktop().exitApp();
        const int before = simwin::calls().size();
        const auto app = instance();
        QWidget widget;
        desktop().mapWindow(window);
        desktop().mapWindow(window + 4);
        desktop().unmapWindow(window);
        desktop().titleChanged(window, QStringLiteral("x"));
        desktop().setSelected(0);
        desktop().setThreadWidgetName(0);
        desktop().setThreadWidgetTitle(window);
        desktop().mapWidget(&widget, true);
        desktop().launchApplication(app.get());
        desktop().clientConnected();
        desktop().timeout();
        QCOMPARE(simwin::calls().size(), before);
        QVERIFY(!widget.isVisible());
    }
};

QTEST_MAIN(DesktopTest)
#include "tst_desktop.moc"
