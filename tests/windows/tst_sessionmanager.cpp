// On the simulated Windows and, as far as the end of the process goes, on the real one.
#include "winapi/sessionmanager.h"

#include "support/quillettest.h"
#include "support/testwindow.h"
#include "winapi/winmanager.h"

#include <QApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

#include <cstring>

#ifndef Q_OS_WIN
#include "simwin.h"

#include <wtsapi32.h>
#endif

class SessionManagerTest : public QuilletTest
{
    Q_OBJECT

#ifndef Q_OS_WIN
    // One for all tests: it has no end.
    SessionManager* const m_manager = new SessionManager; // the process's

    // Waits until the thread waits for events, again.
    static bool isWaiting(int calls)
    {
        return QTest::qWaitFor([calls] { return simwin::callNames().count("WTSWaitSystemEvent") >= calls; });
    }
#endif

private slots:
#ifndef Q_OS_WIN
    void initTestCase()
    {
        m_manager->start(QThread::InheritPriority);
    }

    void init()
    {
        // Not a fresh Windows each time: the thread waits in it.
        if (!m_manager->isRunning())
            QFAIL("the thread has ended");
    }
    void cleanup() {}

    void aClientThatConnectsIsTold_data()
    {
        QTest::addColumn<uint>("events");
        QTest::addColumn<int>("told");
        QTest::newRow("connect") << uint(WTS_EVENT_CONNECT) << 1;
        QTest::newRow("disconnect") << uint(WTS_EVENT_DISCONNECT) << 0;
        QTest::newRow("disconnect and connect") << uint(WTS_EVENT_DISCONNECT | WTS_EVENT_CONNECT) << 1;
        QTest::newRow("create") << uint(WTS_EVENT_CREATE) << 0;
        QTest::newRow("delete") << uint(WTS_EVENT_DELETE) << 0;
        QTest::newRow("rename") << uint(WTS_EVENT_RENAME) << 0;
        QTest::newRow("log-on") << uint(WTS_EVENT_LOGON) << 0;
        QTest::newRow("log-off") << uint(WTS_EVENT_LOGOFF) << 0;
        QTest::newRow("state change") << uint(WTS_EVENT_STATECHANGE) << 0;
        QTest::newRow("licence") << uint(WTS_EVENT_LICENSE) << 0;
        QTest::newRow("everything at once") << uint(WTS_EVENT_ALL) << 1;
    }
    void aClientThatConnectsIsTold()
    {
        QFETCH(uint, events);
        QFETCH(int, told);
        const QSignalSpy connected(m_manager, SIGNAL(clientConnectEvent()));
        const int calls = simwin::callNames().count("WTSWaitSystemEvent");
        simwin::sessionEvent(events);
        QVERIFY(isWaiting(calls + 1)); // it has taken the events and waits again
        QTest::qWait(20);
        QCOMPARE(connected.count(), told);
        QCOMPARE(simwin::calls().last().arguments, QStringList({"0", "7fffffff"}));
    }

    void whereWindowsCannotWaitItTriesAgainAtOnce()
    {
        const int calls = simwin::callNames().count("WTSWaitSystemEvent");
        const QSignalSpy connected(m_manager, SIGNAL(clientConnectEvent()));
        simwin::fail("WTSWaitSystemEvent", ERROR_ACCESS_DENIED, 5000);
        simwin::sessionEvent(WTS_EVENT_CONNECT); // for the call that is waiting
        QVERIFY(isWaiting(calls + 5001));
        QTest::qWait(20);
        QCOMPARE(connected.count(), 1);          // the failures add nothing
        simwin::sessionEvent(WTS_EVENT_CONNECT); // and it still works
        QVERIFY(QTest::qWaitFor([&] { return connected.count() == 2; }));
    }
#endif

    void theProcessEndsThoughItsThreadsDoNot()
    {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--end")});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 5);
    }

    void itHasOneSignalAndNoSlots()
    {
        const QMetaObject& meta = SessionManager::staticMetaObject;
        QCOMPARE(meta.methodCount(), meta.methodOffset() + 1);
        QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("clientConnectEvent()"));
    }
};

// A program with both threads that leaves its event loop. Nobody deletes them.
static int startThreadsAndEnd(int argc, char** argv)
{
#ifndef Q_OS_WIN
    simwin::reset();
    simwin::setRecording(false);
#endif
    QApplication application(argc, argv);
    const TestWindow window(QStringLiteral("ours")); // for whose title the tracker asks this thread
    (new WinManager(nullptr))->start(QThread::InheritPriority);
    (new SessionManager)->start(QThread::InheritPriority);
    QTimer::singleShot(400, [] { QCoreApplication::exit(5); });
    return QApplication::exec();
}

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--end") == 0)
        return startThreadsAndEnd(argc, argv);
    QApplication application(argc, argv);
    SessionManagerTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_sessionmanager.moc"
