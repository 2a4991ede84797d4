// Client drives as this machine has them, whatever that is: on the simulated Windows and on the real one.
#include "winapi/remoteclientmanager.h"

#include "support/quillettest.h"

#include <QSignalSpy>
#include <QtTest>

class ClientDrivesTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void aScanEndsAndItsListsAreInStep()
    {
        RemoteClientManager manager;
        const QSignalSpy update(&manager, SIGNAL(update()));
        manager.start();
        QCOMPARE(update.count(), 1);
        QCOMPARE(manager.drives().size(), manager.shares().size());
        qInfo("drives: %s; shares: %s", qPrintable(manager.drives().join(QLatin1Char(' '))),
              qPrintable(manager.shares().join(QLatin1Char(' '))));
        manager.stop();
        QCOMPARE(manager.drives().size(), manager.shares().size());
    }
};

QTEST_GUILESS_MAIN(ClientDrivesTest)
#include "tst_clientdrives.moc"
