// The controller through whole sessions: many windows, awkward moments, and whatever else a day may bring.
#include "env/serverslot.h"
#include "files/filesystemwidget.h"
#include "instances/appinstance.h"
#include "shell/menu.h"
#include "shell/threadbutton.h"
#include "shell/threadwidget.h"
#include "support/probereport.h"
#include "support/shelltest.h"
#include "winapi/windowoperations.h"
#include "winapi/windowtracker.h"
#include "winapi/winmanager.h"

#include <wtsapi32.h>

#include <QApplication>
#include <QDesktopWidget>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTimer>
#include <QtTest>

#include <limits>
#include <utility>

namespace {

// Counts how often a window was put in front of the others.
class RaiseCounter : public QObject
{
public:
    explicit RaiseCounter(QWidget* window) { window->installEventFilter(this); }
    int raises = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        raises += event->type() == QEvent::ZOrderChange;
        return false;
    }
};

} // namespace

class StoriesTest : public ShellTest
{
    Q_OBJECT

    std::unique_ptr<winapi::WindowTracker> m_tracker;

    // A shell with a tracker that looks when it is told to.
    void startShellWithLooks()
    {
        startShell();
        m_tracker = std::make_unique<winapi::WindowTracker>(winapi::desktopWidgetWindow());
        look();
    }

    // What the tracker's thread does every 300 ms.
    void look()
    {
        const QList<winapi::WindowEvent> events = m_tracker->poll();
        for (const winapi::WindowEvent& event : events) {
            if (event.kind == winapi::WindowEvent::Unmapped)
                desktop().unmapWindow(event.window);
            else if (event.kind == winapi::WindowEvent::Mapped)
                desktop().mapWindow(event.window);
            else
                desktop().titleChanged(event.window, winapi::windowTitle(event.window));
        }
    }

    static void deletePosted() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    static int looks() { return simwin::callNames().count("EnumWindows"); }
    static int layouts() { return calls({"SHAppBarMessage"}).size(); }

    // The task buttons' windows in the order of their buttons.
    QList<qlonglong> windowsWithButtons()
    {
        QList<qlonglong> list;
        for (int i = bar().fixedCount(); i < bar().count(); ++i)
            list.append(bar().buttonAt(i)->windowId());
        return list;
    }

    ThreadWidget* panel() { return bar().findChild<ThreadWidget*>(); }

    QPushButton* arrow(const char* name)
    {
        for (QPushButton* const button : bar().findChildren<QPushButton*>()) {
            if (button->accessibleName() == QLatin1String(name))
                return button;
        }
        qFatal("no such arrow");
    }

    static void setTitle(qlonglong window, const QString& title)
    {
        SetWindowTextW(handle(window), reinterpret_cast<LPCWSTR>(title.utf16()));
    }

    // Asks whether the task in the panel is to be terminated; `meanwhile` happens while the box is open.
    template <typename Function>
    void terminate(QMessageBox::StandardButton answer, Function meanwhile)
    {
        answers().expectDialog("QMessageBox", [=](QWidget* box) {
            QCOMPARE(box->windowTitle(), QStringLiteral("Terminate application"));
            meanwhile(box);
            qobject_cast<QMessageBox*>(box)->button(answer)->click();
        });
        panel()->killButtonClickedSlot();
    }

    template <typename Function>
    void logOff(QMessageBox::StandardButton answer, Function meanwhile)
    {
        answers().expectDialog("QMessageBox", [=](QWidget* box) {
            QCOMPARE(box->windowTitle(), QStringLiteral("Suspend session"));
            meanwhile(box);
            qobject_cast<QMessageBox*>(box)->button(answer)->click();
        });
        shell().powerButton()->click();
    }

private slots:
    void cleanup()
    {
        m_tracker.reset();
        ShellTest::cleanup();
    }

    // --- Many windows

    void aThousandWindowsComeAndGoOneAfterTheOther()
    {
        startShellWithLooks();
        const int objects = bar().findChildren<QObject*>().size();
        QRandomGenerator random(1);
        QList<qlonglong> open;
        for (int opened = 0; opened < 1000 || !open.isEmpty();) {
            if (opened < 1000 && open.size() < 20 && random.bounded(2) == 0) {
                open.append(openWindow(QStringLiteral("window %1").arg(++opened)));
            } else if (!open.isEmpty() && (opened == 1000 || random.bounded(2) == 0)) {
                closeWindow(open.takeAt(random.bounded(open.size())));
            } else {
                look();
                const QList<qlonglong> buttons = windowsWithButtons();
                QCOMPARE(QSet<qlonglong>(buttons.begin(), buttons.end()),
                         QSet<qlonglong>(open.begin(), open.end()));
                QCOMPARE(buttons.size(), open.size());
                if (!open.isEmpty())
                    QVERIFY(current() >= 3);
            }
        }
        look();
        deletePosted();
        QCOMPARE(bar().count(), 3);
        QCOMPARE(current(), 0);
        QCOMPARE(shell().panelText(), QStringLiteral("Desktop"));
        QCOMPARE(bar().findChildren<QObject*>().size(), objects);
        QCOMPARE(simwin::openHandles(), 0);
    }

    void manyWindowsComeAndGoTogetherUnderTheTrackersThread()
    {
        startShellWithTracker();
        QTRY_VERIFY(looks() > 0);
        for (int burst = 0; burst < 4; ++burst) {
            QList<qlonglong> open;
            for (int i = 0; i < 100; ++i)
                open.append(openWindow(QStringLiteral("window %1").arg(i)));
            QTRY_COMPARE(windowsWithButtons().size(), 100);
            for (const qlonglong window : std::as_const(open))
                closeWindow(window);
            QTRY_COMPARE(bar().count(), 3);
        }
        QCOMPARE(current(), 0);
        QCOMPARE(shell().panelText(), QStringLiteral("Desktop"));
    }

    void everyButtonOfTwoHundredIsReachedByTheArrows()
    {
        startShellWithLooks();
        for (int i = 0; i < 200; ++i)
            openWindow(QString::number(i));
        look();
        QCOMPARE(bar().count(), 203);
        QSet<QWidget*> seen;
        const auto collect = [&] {
            for (int i = 3; i < bar().count(); ++i) {
                if (bar().buttonAt(i)->isVisible())
                    seen.insert(bar().buttonAt(i));
            }
        };
        collect();
        for (int i = 0; i < 300 && arrow("leftButton")->isEnabled(); ++i) {
            arrow("leftButton")->click();
            collect();
        }
        QCOMPARE(seen.size(), 200);
        QVERIFY(bar().buttonAt(3)->isVisible());
        bar().buttonAt(3)->click();
        QCOMPARE(current(), 3);
        for (int i = 0; i < 300 && arrow("rightButton")->isEnabled(); ++i)
            arrow("rightButton")->click();
        QVERIFY(bar().buttonAt(202)->isVisible());
        QCOMPARE(bar().width(), QApplication::desktop()->width());
    }

    // --- Windows that go while a question is open

    void aWindowThatGoesWhileItsTerminationIsAskedAboutTerminatesNobody_data()
    {
        QTest::addColumn<bool>("deleted");
        QTest::newRow("its button is gone by then") << true;
        QTest::newRow("the answer comes at once") << false;
    }
    void aWindowThatGoesWhileItsTerminationIsAskedAboutTerminatesNobody()
    {
        QFETCH(bool, deleted);
        startShellWithLooks();
        const qlonglong other = attach(QStringLiteral("other"));
        const qlonglong asked = attach(QStringLiteral("asked about"));
        terminate(QMessageBox::Yes, [=](QWidget*) {
            closeWindow(asked);
            look();
            desktop().unmapWindow(asked);
            QCOMPARE(windowsWithButtons(), QList<qlonglong>{other});
            QCOMPARE(current(), 3); // the panel shows the other one now
            if (deleted)
                deletePosted();
        });
        const QStringList quits = calls({"PostMessageW"}).filter(QStringLiteral(", 12, "));
        QVERIFY2(quits.filter('(' + hex(other)).isEmpty(), qPrintable(quits.join('\n')));
        if (deleted)
            QCOMPARE(quits, QStringList());
        QVERIFY(IsIconic(handle(other)) == FALSE && winapi::windowProcessId(other) != 0);
    }

    void everyWindowMayGoWhileTheSuspensionIsAskedAbout_data()
    {
        QTest::addColumn<int>("answer");
        QTest::newRow("yes") << int(QMessageBox::Yes);
        QTest::newRow("no") << int(QMessageBox::No);
    }
    void everyWindowMayGoWhileTheSuspensionIsAskedAbout()
    {
        QFETCH(int, answer);
        startShellWithLooks();
        const qlonglong first = openWindow(QStringLiteral("first"));
        const qlonglong second = openWindow(QStringLiteral("second"));
        look();
        QCOMPARE(bar().count(), 5);
        logOff(static_cast<QMessageBox::StandardButton>(answer), [=](QWidget*) {
            closeWindow(first);
            closeWindow(second);
            look();
            deletePosted();
            QCOMPARE(bar().count(), 3);
        });
        if (answer == QMessageBox::Yes) {
            QCOMPARE(calls({"WTSDisconnectSession"}).size(), 1);
            QVERIFY(calls({"ExitWindowsEx"}).isEmpty());
            QCOMPARE(current(), 0);
        } else {
            QVERIFY(calls({"WTSDisconnectSession"}).isEmpty());
            QCOMPARE(exitCallsMade(), exitCalls());
        }
    }

    // Nothing else of the shell answers then, and nobody could reach a box behind a window that fills the
    // screen.
    void aQuestionStaysInFrontOfWhateverComesMeanwhile()
    {
        startShellWithLooks();
        attach(QStringLiteral("first"));
        logOff(QMessageBox::Yes, [=](QWidget* box) {
            RaiseCounter counter(box);
            const auto wasRaised = [&] { return std::exchange(counter.raises, 0) > 0; };
            openWindow(QStringLiteral("late"));
            look();
            QCOMPARE(bar().count(), 5);
            QVERIFY(wasRaised());
            desktop().mapWindow(bar().buttonAt(3)->windowId());
            QVERIFY(wasRaised());
            desktop().clientConnected();
            QVERIFY(wasRaised());
            closeWindow(bar().buttonAt(4)->windowId());
            look();
            QVERIFY(wasRaised()); // another window was brought to the front
            desktop().mapWidget(shell().launcher(), true);
            QVERIFY(wasRaised());
            QTRY_VERIFY(box->isActiveWindow());
        });
    }

    void theEndIsAskedAboutOnceHoweverOftenItIsWanted()
    {
        startShellWithLooks();
        attach(QStringLiteral("letter"));
        answers().expectDialog("QMessageBox", [=](QWidget* box) {
            for (int i = 0; i < 5; ++i)
                desktop().exitApp(); // another box would be one that nobody expects
            QCOMPARE(QApplication::activeModalWidget(), box);
            qobject_cast<QMessageBox*>(box)->button(QMessageBox::No)->click();
        });
        desktop().exitApp();
        QVERIFY(!shell().bar() || !shell().bar()->isVisible());
        QCOMPARE(exitCallsMade(), exitCalls());
    }

    // --- Titles

    void titlesThatChangeAtEveryLookAreFollowed()
    {
        startShellWithLooks();
        QList<qlonglong> open;
        for (int i = 0; i < 20; ++i)
            open.append(openWindow(QString::number(i)));
        look();
        for (int round = 0; round < 50; ++round) {
            for (const qlonglong window : std::as_const(open))
                setTitle(window, QStringLiteral("round %1 of %2").arg(round).arg(window));
            look();
            QCOMPARE(shell().panelText(),
                     QStringLiteral("round %1 of %2").arg(round).arg(bar().buttonAt(current())->windowId()));
            bar().buttonAt(3 + round % 20)->click();
        }
        QCOMPARE(windowsWithButtons().size(), 20);
    }

    void aTitleThatChangesWhileTheTrackersThreadRunsIsShown()
    {
        startShellWithTracker();
        QTRY_VERIFY(looks() > 0);
        const qlonglong window = openWindow(QStringLiteral("letter"));
        QTRY_COMPARE(bar().count(), 4);
        for (int i = 0; i < 5; ++i) {
            setTitle(window, QString::number(i));
            QTRY_COMPARE(shell().panelText(), QString::number(i));
        }
    }

    // --- Reconnections

    void aReconnectionDuringALaunchLeavesTheLaunchUnderWay()
    {
        addProbe("icon=kcalc.png\n");
        startShellWithLooks();
        const auto app = instance();
        desktop().launchApplication(app.get());
        const int before = layouts();
        simwin::sessionEvent(WTS_EVENT_CONNECT);
        QTRY_COMPARE(layouts(), before + 1);
        QVERIFY(isWaiting());
        QVERIFY(launchTimers().constFirst()->isActive());
        openWindow(QStringLiteral("the launch's"));
        look();
        QVERIFY(!isWaiting());
        QCOMPARE(bar().buttonAt(3)->name(), QStringLiteral("probe"));
    }

    void aReconnectionWhileALaunchProcessesEventsStartsItOnce()
    {
        addProbe();
        startShellWithLooks();
        const auto app = instance();
        const int before = layouts();
        QTimer::singleShot(0, &desktop(), SLOT(clientConnected()));
        desktop().launchApplication(app.get());
        QCOMPARE(layouts(), before + 1);
        QCOMPARE(log().filter(QStringLiteral("Launching application")).size(), 1);
        QVERIFY(isWaiting());
    }

    void aReconnectionDuringAQuestionLeavesItOpen()
    {
        startShellWithLooks();
        const qlonglong window = attach(QStringLiteral("letter"));
        const int before = layouts();
        logOff(QMessageBox::Yes, [=](QWidget* box) {
            for (int i = 1; i <= 3; ++i) {
                simwin::sessionEvent(WTS_EVENT_CONNECT);
                QTRY_COMPARE(layouts(), before + i);
            }
            QVERIFY(box->isVisible());
        });
        QCOMPARE(windowsWithButtons(), QList<qlonglong>{window});
        QCOMPARE(current(), 3);
    }

    // --- Handles

    void windowsThatWereNeverSeenMayGo()
    {
        startShellWithLooks();
        const qlonglong window = attach(QStringLiteral("letter"));
        QRandomGenerator random(2);
        for (int i = 0; i < 10000; ++i) {
            const auto unknown = static_cast<qlonglong>(random.generate64());
            if (static_cast<quint32>(unknown) != static_cast<quint32>(window))
                desktop().unmapWindow(unknown);
        }
        for (const qlonglong odd : {std::numeric_limits<qlonglong>::min(),
                                    std::numeric_limits<qlonglong>::max(), Q_INT64_C(1) << 32, Q_INT64_C(-1)})
            desktop().unmapWindow(odd);
        QCOMPARE(windowsWithButtons(), QList<qlonglong>{window});
        QCOMPARE(current(), 3);
        QCOMPARE(simwin::openHandles(), 0);
    }

    void windowsThatDifferAbove32BitsAloneShareAButton()
    {
        startShellWithLooks();
        const qlonglong low = 0x40a0;
        const qlonglong high = low + (Q_INT64_C(7) << 32);
        simwin::setNextHandle(low);
        openWindow(QStringLiteral("low"));
        look();
        simwin::setNextHandle(high);
        openWindow(QStringLiteral("high"));
        look();
        QCOMPARE(windowsWithButtons(), QList<qlonglong>{low});
        closeWindow(high);
        look();
        QCOMPARE(windowsWithButtons(), QList<qlonglong>());
        closeWindow(low);
        look();
        QCOMPARE(bar().count(), 3);
    }

    void aHandleWithItsTopBitSetIsFollowedAndClosed()
    {
        startShellWithLooks();
        simwin::setNextHandle(0x80004010);
        const qlonglong window = openWindow(QStringLiteral("letter"));
        look();
        QCOMPARE(windowsWithButtons(), QList<qlonglong>{window});
        panel()->closeButtonClickedSlot();
        QVERIFY(windowCalls().contains(QStringLiteral("PostMessageW(ffffffff80004010, 112, f060, 0)")));
        closeWindow(window);
        look();
        QCOMPARE(bar().count(), 3);
    }

    // --- Launches

    void aWindowThatComesBeforeTheTimerEndsTheWait()
    {
        addProbe("icon=kcalc.png\n");
        startShellWithLooks();
        const auto app = instance();
        desktop().launchApplication(app.get());
        const qlonglong window = openWindow(QStringLiteral("in time"));
        look();
        QVERIFY(!isWaiting());
        const ThreadButton* const button = bar().buttonAt(3);
        QCOMPARE(button->windowId(), window);
        QTimer* const timer = launchTimers().constFirst();
        QVERIFY(timer->isActive());
        desktop().launchApplication(app.get()); // the next launch need not wait for the timer
        QCOMPARE(log().filter(QStringLiteral("Launching application")).size(), 2);
        QVERIFY(timer->remainingTime() > 14000); // which begins anew
        QVERIFY(isWaiting());
    }

    void aWindowThatComesAfterTheTimerHasTheLaunchsLook()
    {
        addProbe("icon=kcalc.png\n");
        startShellWithLooks();
        const auto app = instance();
        desktop().launchApplication(app.get());
        launchTimers().constFirst()->start(1);
        QTRY_VERIFY(!isWaiting());
        QVERIFY(!launchTimers().constFirst()->isActive());
        const qlonglong window = openWindow(QStringLiteral("late"));
        look();
        QCOMPARE(shell().tasks(), QStringList("probe@" + hex(window)));
        QCOMPARE(bar().buttonAt(3)->picture().toImage(),
                 QIcon(QStringLiteral(":/icons/applications/kcalc.png")).pixmap(48, 42).toImage());
    }

    void onlyANewWindowEndsTheWaitOfALaunch()
    {
        addProbe();
        startShellWithLooks();
        const qlonglong stays = openWindow(QStringLiteral("stays"));
        const qlonglong goes = openWindow(QStringLiteral("goes"));
        look();
        const auto app = instance();
        desktop().launchApplication(app.get());
        closeWindow(goes);
        setTitle(stays, QStringLiteral("stays *"));
        openWindow(QStringLiteral("tool"), WS_OVERLAPPEDWINDOW | WS_VISIBLE, WS_EX_TOOLWINDOW);
        look();
        QCOMPARE(windowsWithButtons(), QList<qlonglong>{stays});
        bar().buttonAt(0)->click();
        QVERIFY(isWaiting());
        // Wanted: nobody knows whose it is. It is taken for the launch's.
        const qlonglong another = openWindow(QStringLiteral("another of the first program"));
        look();
        QVERIFY(!isWaiting());
        QCOMPARE(shell().tasks(), QStringList({"@" + hex(stays), "probe@" + hex(another)}));
        const qlonglong launched = openWindow(QStringLiteral("the launch's"));
        closeWindow(another);
        look();
        QCOMPARE(shell().tasks(), QStringList({"@" + hex(stays), "probe@" + hex(launched)}));
    }

    void aWindowThatGoesBeforeItIsToldLeavesTheLaunchUnderWay()
    {
        addProbe();
        startShellWithLooks();
        const auto app = instance();
        desktop().launchApplication(app.get());
        for (int i = 0; i < 20; ++i) {
            const qlonglong splash = openWindow(QStringLiteral("splash"));
            closeWindow(splash);
            desktop().mapWindow(splash);
            desktop().unmapWindow(splash);
        }
        QVERIFY(isWaiting());
        QCOMPARE(bar().count(), 3);
    }

    // --- The server goes

    void aServerThatGoesInTheMiddleOfTheSessionHoldsNobodyUp()
    {
        startServer();
        addToServer(QStringLiteral("word"), QStringLiteral(PROBE), QString("127.0.0.1"),
                    QStringLiteral("windows"));
        sandbox().setVariable("PROBE_REPORT", reportPath().toUtf8());
        startShellWithLooks();
        AppInstance known(QStringLiteral("word"), env::serverClient());
        server().stop();
        QElapsedTimer timer;
        timer.start();

        desktop().launchApplication(&known);
        QVERIFY(desktop().currentProcess());
        ProbeReport::take(reportPath());
        const qlonglong window = openWindow(QStringLiteral("letter"));
        look();
        QCOMPARE(shell().tasks(), QStringList("word@" + hex(window)));

        AppInstance unknown(QStringLiteral("word"), env::serverClient());
        desktop().launchApplication(&unknown); // there is nothing to start
        desktop().timeout();
        desktop().openFile(QStringLiteral("/x.txt"));
        QVERIFY(!isWaiting());
        desktop().openFile(QStringLiteral("/x.txt"), QStringLiteral("word"));
        desktop().clientConnected();
        desktop().mapWidget(shell().fileManager());
        closeWindow(window);
        look();
        desktop().exitApp();
        QCOMPARE(exitCallsMade(), exitCalls());
        QVERIFY(!env::serverClient());
        QVERIFY2(timer.elapsed() < 15000, qPrintable(QString::number(timer.elapsed())));
    }

    // --- Whatever comes

    void whateverHappensTheBarStaysWhole_data()
    {
        QTest::addColumn<uint>("seed");
        for (uint seed = 1; seed <= 5; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
    void whateverHappensTheBarStaysWhole()
    {
        QFETCH(uint, seed);
        startShellWithLooks();
        QRandomGenerator random(seed);
        QList<qlonglong> open;
        const auto any = [&] { return open.isEmpty() ? 0x777 : open.at(random.bounded(open.size())); };
        const auto anyPosition = [&] { return random.bounded(bar().count() + 4) - 2; };
        QWidget* const pages[] = {bar().buttonAt(0)->widget(), bar().buttonAt(1)->widget(),
                                  bar().buttonAt(2)->widget()};
        for (int step = 0; step < 600; ++step) {
            const qlonglong window = any();
            switch (random.bounded(22)) {
            case 0:
            case 1:
            case 2:
                if (open.size() < 40)
                    open.append(openWindow(QStringLiteral("window %1").arg(step),
                                           random.bounded(4) ? WS_OVERLAPPEDWINDOW | WS_VISIBLE : WS_VISIBLE,
                                           random.bounded(6) ? 0 : WS_EX_TOOLWINDOW));
                break;
            case 3:
            case 4:
                closeWindow(window);
                open.removeAll(window);
                break;
            case 5:
                ShowWindow(handle(window), random.bounded(2) ? SW_HIDE : SW_SHOW);
                break;
            case 6:
                ShowWindow(handle(window), random.bounded(2) ? SW_MINIMIZE : SW_RESTORE);
                break;
            case 7:
                setTitle(window, QString::number(step));
                break;
            case 8:
                SetWindowLongW(handle(window), GWL_EXSTYLE,
                               random.bounded(2) ? static_cast<LONG>(WS_EX_APPWINDOW) : 0);
                break;
            case 9:
                if (ThreadButton* const button = bar().buttonAt(anyPosition()))
                    button->click();
                break;
            case 10:
                arrow(random.bounded(2) ? "leftButton" : "rightButton")->click();
                break;
            case 11:
                panel()->closeButtonClickedSlot();
                break;
            case 12:
                desktop().killButtonClicked(window);
                break;
            case 13:
                desktop().clientConnected();
                break;
            case 14:
                desktop().mapWidget(pages[random.bounded(3)], random.bounded(2) == 0);
                break;
            case 15:
                desktop().setSelected(anyPosition());
                break;
            case 16:
                bar().setCurrentIndex(anyPosition());
                break;
            case 17:
                desktop().unmapWindow(window + random.bounded(2) * (Q_INT64_C(1) << 32));
                break;
            case 18:
                desktop().mapWindow(window + random.bounded(2) * (Q_INT64_C(1) << 32));
                break;
            case 19:
                simwin::setForegroundWindow(random.bounded(2) ? window : 0);
                break;
            default:
                look();
            }
            if (random.bounded(10) == 0)
                QCoreApplication::processEvents();
            const QList<qlonglong> buttons = windowsWithButtons();
            QCOMPARE(QSet<qlonglong>(buttons.begin(), buttons.end()).size(), buttons.size());
            QVERIFY(current() >= -1 && current() < bar().count());
            QCOMPARE(bar().fixedCount(), 3);
            for (int i = 0; i < bar().count(); ++i)
                QVERIFY(bar().buttonAt(i)->window() == &bar());
        }
        simwin::setForegroundWindow(0);
        for (const qlonglong window : windowsWithButtons())
            closeWindow(window);
        for (const qlonglong window : windowsWithButtons())
            desktop().unmapWindow(window);
        QCOMPARE(bar().count(), 3);
    }
};

QTEST_MAIN(StoriesTest)
#include "tst_stories.moc"
