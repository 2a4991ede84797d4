#include "env/serverslot.h"
#include "support/quillettest.h"

#include <QtTest>

class ServerSlotTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void theSlotIsNullUntilAClientIsSet()
    {
        QVERIFY(!env::serverClient());
        int anything = 0; // the slot only carries the pointer
        const auto client = reinterpret_cast<TWClient*>(&anything);
        env::setServerClient(client);
        QCOMPARE(env::serverClient(), client);
        env::setServerClient(nullptr);
        QVERIFY(!env::serverClient());
    }
};

QTEST_GUILESS_MAIN(ServerSlotTest)
#include "tst_serverslot.moc"
