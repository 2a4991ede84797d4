// On the simulated Windows and on the real one.
#include "winapi/processes.h"
#include "winapi/windowssession.h"

#include "support/quillettest.h"

#include <QCoreApplication>
#include <QProcess>
#include <QtTest>

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

class ProcessesTest : public QuilletTest
{
    Q_OBJECT

    static constexpr quint32 m_runs = 258;
    static constexpr quint32 m_notThere = 0xFFFFFFFF;

private slots:
    void aProcessThatRunsIsWaitedForInVain()
    {
        const auto id = static_cast<quint32>(QCoreApplication::applicationPid());
#ifndef Q_OS_WIN
        simwin::setProcessRuns(id, true);
#endif
        QCOMPARE(winapi::processWaitResult(id), m_runs);
    }

    void aProcessThatEndedIsNeverStillActive()
    {
        QProcess process;
        process.start(QStringLiteral(PROBE), QStringList());
        QVERIFY(process.waitForStarted());
        const auto id = static_cast<quint32>(process.processId());
        QVERIFY(process.waitForFinished());
#ifndef Q_OS_WIN
        simwin::setProcessRuns(id, false);
#endif
        const quint32 result = winapi::processWaitResult(id);
        QVERIFY2(result == 0 || result == m_notThere, qPrintable(QString::number(result)));
    }

    void aProcessThatIsNotThereCannotBeAsked()
    {
        QCOMPARE(winapi::processWaitResult(0), m_notThere);
        QCOMPARE(winapi::processWaitResult(0xFFFFFFFC), m_notThere);
    }

#ifndef Q_OS_WIN
    void theProcessIsOpenedForWaitingAloneAndClosedAgain()
    {
        simwin::setProcessRuns(77, false);
        QCOMPARE(winapi::processWaitResult(77), 0u);
        const QList<simwin::Call> calls = simwin::calls();
        QCOMPARE(simwin::callNames(),
                 QList<QByteArray>({"OpenProcess", "WaitForSingleObject", "CloseHandle"}));
        QCOMPARE(calls.at(0).arguments, QStringList({"100000", "0", "77"}));
        QCOMPARE(calls.at(1).arguments, QStringList(QStringLiteral("0")));
        QCOMPARE(simwin::openHandles(), 0);
    }

    void theSessionIsDisconnectedWithoutWaiting()
    {
        winapi::disconnect();
        QCOMPARE(simwin::calls().size(), 1);
        QCOMPARE(simwin::calls().first().function, QByteArray("WTSDisconnectSession"));
        QCOMPARE(simwin::calls().first().arguments, QStringList({"0", "ffffffff", "0"}));
    }
#endif
};

QTEST_GUILESS_MAIN(ProcessesTest)
#include "tst_processes.moc"
