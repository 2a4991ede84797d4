#include "winapi/systemtaskbar.h"

#include "simwin.h"
#include "support/quillettest.h"

#include <QtTest>

class SystemTaskBarTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void theBarIsToldItsStateWhetherItIsThereOrNot_data()
    {
        QTest::addColumn<bool>("hide");
        QTest::addColumn<bool>("there");
        QTest::newRow("hide, there") << true << true;
        QTest::newRow("hide, not there") << true << false;
        QTest::newRow("restore, there") << false << true;
        QTest::newRow("restore, not there") << false << false;
    }
    void theBarIsToldItsStateWhetherItIsThereOrNot()
    {
        QFETCH(bool, hide);
        QFETCH(bool, there);
        if (there)
            simwin::setWindowOfClass(QStringLiteral("System_TrayWnd"), 77);
        simwin::setWindowOfClass(QStringLiteral("Shell_TrayWnd"), 99); // another one
        if (hide)
            winapi::hideSystemTaskBar();
        else
            winapi::restoreSystemTaskBar();
        const QList<simwin::Call> calls = simwin::calls();
        QCOMPARE(simwin::callNames(), QList<QByteArray>({"FindWindowW", "SHAppBarMessage"}));
        QCOMPARE(calls.at(0).arguments, QStringList({"System_TrayWnd", ""}));
        // Message, size of the structure, window, state.
        QCOMPARE(calls.at(1).arguments, QStringList({"10", "48", there ? "77" : "0", hide ? "1" : "2"}));
    }

    void aRefusalChangesNothing()
    {
        simwin::fail("SHAppBarMessage", ERROR_ACCESS_DENIED);
        simwin::fail("FindWindowW", ERROR_ACCESS_DENIED);
        winapi::hideSystemTaskBar();
        winapi::restoreSystemTaskBar();
        QCOMPARE(simwin::calls().size(), 4);
    }
};

QTEST_GUILESS_MAIN(SystemTaskBarTest)
#include "tst_systemtaskbar.moc"
