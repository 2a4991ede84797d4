// The controller: launches, and the files that they open.
#include "catalogue/application.h"
#include "env/serverslot.h"
#include "instances/appinstance.h"
#include "shell/appbutton.h"
#include "shell/menu.h"
#include "support/probereport.h"
#include "support/shelltest.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QTimer>
#include <QtTest>

namespace {

// Counts the application instances that delete themselves while it lives.
struct Deletions : QObject
{
    int instances = 0;

    Deletions() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        instances +=
            event->type() == QEvent::DeferredDelete && qobject_cast<AppInstance*>(watched) != nullptr;
        return false;
    }
};

} // namespace

class LaunchingTest : public ShellTest
{
    Q_OBJECT

    // A server whose application for ".txt" is the probe.
    void startServerWithProbeForText()
    {
        startServer();
        addToServer(QStringLiteral("probe"), QStringLiteral(PROBE), QStringLiteral("127.0.0.1"),
                    QStringLiteral("windows"));
        server().data.extensions.append({QStringLiteral(".txt"), {QStringLiteral("probe")}});
    }

private slots:
    // --- Launching

    void aLaunchStartsTheProcessUnderTheWaitCursor()
    {
        addProbe();
        startShell();
        const auto app = instance();
        desktop().launchApplication(app.get());
        QVERIFY(isWaiting());
        QCOMPARE(shell().launcher()->cursor().shape(), Qt::WaitCursor);
        QCOMPARE(bar().cursor().shape(), Qt::WaitCursor);
        QProcess* const process = desktop().currentProcess();
        QVERIFY(process);
        const qint64 id = process->processId();
        QVERIFY(id > 0);
        QCOMPARE(desktop().process(id), process);
        QCOMPARE(log().last(), QStringLiteral("Info: Launching application probe with PID=%1").arg(id));
        QVERIFY(debugOutput().contains(QStringLiteral("Type: windows")));
        ProbeReport::take(reportPath());
    }

    void aLaunchPassesNoSizeAndNoPort()
    {
        startShellWithRemoteApplication();
        AppInstance app(QStringLiteral("word"), env::serverClient());
        desktop().launchApplication(&app);
        const QStringList arguments = ProbeReport::take(reportPath()).arguments;
        QVERIFY2(arguments.contains(QStringLiteral("-1x-1")), qPrintable(arguments.join(' ')));
    }

    void whileALaunchIsUnderWayAnotherIsIgnored()
    {
        addProbe();
        startShell();
        const auto first = instance();
        const auto second = instance();
        desktop().launchApplication(first.get());
        QProcess* const process = desktop().currentProcess();
        desktop().launchApplication(second.get());
        QCOMPARE(desktop().currentProcess(), process);
        QCOMPARE(log().filter(QStringLiteral("Launching application")).size(), 1);
    }

    void withoutTheWaitCursorOrTheTimerAnotherLaunchGoesOn()
    {
        addProbe();
        startShell();
        const auto first = instance();
        const auto second = instance();
        desktop().launchApplication(first.get());
        QApplication::desktop()->setCursor(Qt::ArrowCursor); // the timer still runs
        desktop().launchApplication(second.get());
        QCOMPARE(log().filter(QStringLiteral("Launching application")).size(), 2);
        desktop().timeout();
        QApplication::desktop()->setCursor(Qt::WaitCursor); // and no timer
        desktop().launchApplication(first.get());
        QCOMPARE(log().filter(QStringLiteral("Launching application")).size(), 3);
    }

    void aLaunchThatArrivesWhileAnotherProcessesEventsIsIgnored()
    {
        addProbe();
        startShell();
        const auto first = instance();
        const auto second = instance();
        QTimer::singleShot(0, [&] { desktop().launchApplication(second.get()); });
        desktop().launchApplication(first.get());
        QCOMPARE(log().filter(QStringLiteral("Launching application")).size(), 1);
    }

    void pendingEventsAreProcessedBeforeTheStart()
    {
        addProbe();
        startShell();
        const auto app = instance();
        bool waited = false;
        bool timed = true;
        int started = -1;
        QTimer::singleShot(0, [&] {
            waited = isWaiting();
            timed = launchTimers().first()->isActive();
            started = log().filter(QStringLiteral("Launching:")).size();
        });
        desktop().launchApplication(app.get());
        QVERIFY(waited);
        QVERIFY(!timed); // the 15 seconds are the launch's alone
        QCOMPARE(started, 0);
    }

    void anInstanceThatGoesWhileEventsAreProcessedIsNotStarted()
    {
        addProbe();
        startShell();
        AppInstance* const app = instance().release();
        QTimer::singleShot(0, [app] { delete app; });
        desktop().launchApplication(app);
        QVERIFY(!isWaiting());
        QVERIFY(log().filter(QStringLiteral("Launching")).isEmpty());
        const auto next = instance();
        desktop().launchApplication(next.get());
        QCOMPARE(log().filter(QStringLiteral("Launching application")).size(), 1);
    }

    void aSessionThatEndsWhileALaunchProcessesEventsStartsNothing()
    {
        addProbe();
        startShell();
        const auto app = instance();
        QTimer::singleShot(0, &desktop(), SLOT(exitApp()));
        desktop().launchApplication(app.get());
        QVERIFY(log().filter(QStringLiteral("Launching")).isEmpty());
        QCOMPARE(exitCallsMade(), exitCalls());
    }

    void aSessionThatEndsDuringALaunchKeepsThePressedButtonUntilItsClickIsOver()
    {
        startServer();
        addToServer(QStringLiteral("probe"), QStringLiteral(PROBE), QStringLiteral("127.0.0.1"),
                    QStringLiteral("windows"));
        startShell();
        const QPointer<AppButton> button(shell().launcher()->findChild<AppButton*>());
        QVERIFY(button);
        bool wasThere = false;
        connect(button.data(), &AppButton::clicked, this, [&] { wasThere = true; }); // after the launch
        QMetaObject::invokeMethod(&desktop(), "exitApp", Qt::QueuedConnection);
        button->click();
        QVERIFY(wasThere);
        QCOMPARE(exitCallsMade(), exitCalls());
        QVERIFY(log().filter(QStringLiteral("Launching")).isEmpty());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!button);
    }

    void theTimerEndsTheWait()
    {
        addProbe();
        startShell();
        const auto app = instance();
        desktop().launchApplication(app.get());
        QVERIFY(isWaiting());
        const QList<QTimer*> timers = launchTimers();
        QCOMPARE(timers.size(), 1);
        QCOMPARE(timers.first()->interval(), 15000);
        timers.first()->start(1); // the rest of the 15 seconds
        QTRY_VERIFY(!isWaiting());
        QVERIFY(!timers.first()->isActive());
        for (const QWidget* const widget :
             {static_cast<QWidget*>(QApplication::desktop()), static_cast<QWidget*>(shell().launcher()),
              static_cast<QWidget*>(&bar())})
            QCOMPARE(widget->cursor().shape(), Qt::ArrowCursor);
    }

    void theEndOfTheWaitDisconnectsTheTimerHoweverManyLaunchesThereWere()
    {
        addProbe();
        startShell();
        const auto app = instance();
        for (int launch = 0; launch < 3; ++launch) {
            desktop().launchApplication(app.get());
            QApplication::desktop()->setCursor(Qt::ArrowCursor);
        }
        desktop().timeout();
        QVERIFY(!launchTimers().first()->disconnect(SIGNAL(timeout()), &desktop(), SLOT(timeout())));
    }

    void theEndOfTheWaitLeavesOtherCursorsAlone()
    {
        startShell();
        QApplication::desktop()->setCursor(Qt::CrossCursor);
        desktop().timeout();
        QCOMPARE(QApplication::desktop()->cursor().shape(), Qt::CrossCursor);
    }

    void anOnlyOneApplicationLogsEveryButtonAndStartsAgain()
    {
        addProbe("only-one-instance=true\n");
        startShell();
        attach(QStringLiteral("letter"));
        const auto app = instance();
        for (int launch = 1; launch <= 2; ++launch) {
            desktop().launchApplication(app.get());
            desktop().timeout();
            const QStringList lines = log().filter(QStringLiteral("Looking for"));
            QCOMPARE(lines.size(), 4 * launch);
            for (int i = 0; i < 4; ++i)
                QCOMPARE(lines[4 * launch - 4 + i],
                         QStringLiteral("Info: Looking for onlyOne existing application. AppName(%1): probe")
                             .arg(i));
            QCOMPARE(log().filter(QStringLiteral("Launching application")).size(), launch);
        }
    }

    void aProgramThatDoesNotStartHasNoProcessId()
    {
        sandbox().writeUserApplications("[probe]\nname=gone\nos=windows\ncommand=/nonexistent/program\n");
        startShell();
        const auto app = instance();
        desktop().launchApplication(app.get());
        QCOMPARE(log().last(), QStringLiteral("Info: Launching application probe with PID=0"));
        QVERIFY(isWaiting()); // for 15 seconds, as when no window comes
    }

    void aProcessThatEndedIsForgottenByItsPointersAlone()
    {
        addProbe();
        startShell();
        const auto app = instance();
        desktop().launchApplication(app.get());
        QTRY_VERIFY(!desktop().currentProcess());
    }

    void nothingIsLaunchedWithoutAnInstance()
    {
        startShell();
        desktop().launchApplication(nullptr);
        QVERIFY(!isWaiting());
    }

    // --- Opening files

    void aFileOpensWithTheGivenApplication()
    {
        addProbe();
        startShell();
        const QString file = sandbox().scratch() + QStringLiteral("/a letter.txt");
        desktop().openFile(file, QStringLiteral("probe"));
        QCOMPARE(debugOutput().value(0),
                 QStringLiteral("Trying to open file %1 with application probe").arg(file));
        const ProbeReport report = ProbeReport::take(reportPath());
        QVERIFY2(report.arguments.last().endsWith(QStringLiteral("a letter.txt")),
                 qPrintable(report.arguments.join('|')));
    }

    void aFileOpensWithItsExtensionsApplication()
    {
        startServerWithProbeForText();
        sandbox().setVariable("PROBE_REPORT", reportPath().toUtf8());
        startShell();
        const QString file = sandbox().scratch() + QStringLiteral("/letter.txt");
        desktop().openFile(file);
        QVERIFY(ProbeReport::take(reportPath()).arguments.join(' ').contains(QStringLiteral("letter.txt")));
    }

    void aFileWithoutAnApplicationOpensNothingSilently()
    {
        startShell();
        desktop().openFile(QStringLiteral("/nowhere/a.unknown"));
        desktop().openFile(QStringLiteral("/nowhere/without"), QString());
        desktop().openFile(QString());
        QVERIFY(!isWaiting());
        QVERIFY(log().filter(QStringLiteral("AppInstance")).size() ==
                Application::validApplications().size()); // the launcher's alone
    }

    void linksThatLeadNowhereAreToldAndNothingOpens()
    {
        startServerWithProbeForText();
        startShell();
        const QString link = sandbox().scratch() + QStringLiteral("/loop.txt");
        QVERIFY(QFile::link(link, link));
        answers().expectBox(QStringLiteral("Link error"),
                            QStringLiteral("This file is a recursive set of links"), QMessageBox::Critical);
        desktop().openFile(link);
        QVERIFY(!isWaiting());
        QVERIFY(log().filter(QStringLiteral("Launching")).isEmpty());
    }

    void aLinkOpensUnderItsOwnNameAndAnApplicationIsNotAskedAboutLoops()
    {
        addProbe();
        startShell();
        const QString link = sandbox().scratch() + QStringLiteral("/loop.txt");
        QVERIFY(QFile::link(link, link));
        desktop().openFile(link, QStringLiteral("probe"));
        QVERIFY(ProbeReport::take(reportPath()).arguments.join(' ').contains(QStringLiteral("loop.txt")));
    }

    void aLinkOpensUnderItsOwnNameWithItsOwnExtensionsApplication()
    {
        startServerWithProbeForText();
        sandbox().setVariable("PROBE_REPORT", reportPath().toUtf8());
        startShell();
        const QString target = sandbox().scratch() + QStringLiteral("/target.unknown");
        const QString link = sandbox().scratch() + QStringLiteral("/link.tar.txt");
        QFile file(target);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(target, link));
        desktop().openFile(link);
        const QString arguments = ProbeReport::take(reportPath()).arguments.join(' ');
        QVERIFY2(arguments.contains(QStringLiteral("link.tar.txt")), qPrintable(arguments));
        QVERIFY2(!arguments.contains(QStringLiteral("target")), qPrintable(arguments));
    }

    void anInstanceForAFileGoesWithItsProcess()
    {
        addProbe();
        startShell();
        const Deletions deletions;
        desktop().openFile(QStringLiteral("/x.txt"), QStringLiteral("probe"));
        ProbeReport::take(reportPath());
        QTRY_COMPARE(deletions.instances, 1);
    }

    void anInstanceForAFileThatNeverStartedGoesToo_data()
    {
        QTest::addColumn<bool>("ignored");
        QTest::newRow("the launch was ignored") << true;
        QTest::newRow("the program is not there") << false;
    }
    void anInstanceForAFileThatNeverStartedGoesToo()
    {
        QFETCH(bool, ignored);
        addProbe();
        startShell();
        const auto other = instance();
        if (ignored)
            desktop().launchApplication(other.get());
        const Deletions deletions;
        desktop().openFile(QStringLiteral("/x.txt"),
                           ignored ? QStringLiteral("probe") : QStringLiteral("nobody"));
        QTRY_COMPARE(deletions.instances, 1);
    }

    void theLaunchersInstancesStayWithTheLauncher()
    {
        addProbe();
        startShell();
        const auto app = instance();
        const Deletions deletions;
        desktop().launchApplication(app.get());
        QTRY_VERIFY(!desktop().currentProcess());
        QCOMPARE(deletions.instances, 0);
    }

    void otherSlotsDoNothing()
    {
        startShell();
        const int before = simwin::calls().size();
        desktop().openMime(QStringLiteral("/x"), QStringLiteral("text/plain"));
        desktop().mapNotify();
        desktop().loadedFinished();
        QVERIFY(!desktop().isLoading());
        QCOMPARE(simwin::calls().size(), before);
        QVERIFY(debugOutput().isEmpty());
    }
};

QTEST_MAIN(LaunchingTest)
#include "tst_launching.moc"
