#include "env/identity.h"
#include "env/network.h"
#include "support/quillettest.h"

#include <QHostInfo>
#include <QtTest>

class NetworkTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void theHomeShareIsServerAndCredentialsUser()
    {
        sandbox().writeSettings("SambaServer=files\n");
        env::setUserName(QStringLiteral("ada"));
        QCOMPARE(env::homeSharePath(), QStringLiteral("\\\\files\\ada"));
    }

    void theHomeShareReadsTheUserFromTheCredentialsFile()
    {
        sandbox().writeSettings("SambaServer=files\n");
        sandbox().writeCredentials("bob\nsecret\n");
        env::setUserName(QString());
        QCOMPARE(env::homeSharePath(), QStringLiteral("\\\\files\\bob"));
    }

    void theHomeShareWithoutAnythingIsThreeBackslashes()
    {
        env::setUserName(QString());
        QCOMPARE(env::homeSharePath(), QStringLiteral("\\\\\\"));
    }

    void theSharedFolderHasNothingBetweenServerAndPath()
    {
        sandbox().writeSettings("SambaServer=files\nSambaSharedPath=\\\\shared\n");
        QCOMPARE(env::sharedFolderPath(), QStringLiteral("\\\\files\\shared"));
        sandbox().writeSettings("SambaServer=files\nSambaSharedPath=without\n");
        QCOMPARE(env::sharedFolderPath(), QStringLiteral("\\\\fileswithout"));
        sandbox().writeSettings("other=1\n");
        QCOMPARE(env::sharedFolderPath(), QStringLiteral("\\\\"));
    }

    void everyHostIsRemote_data()
    {
        QTest::addColumn<QString>("host");
        QTest::newRow("address") << "10.0.0.5";
        QTest::newRow("localhost") << "localhost";
        QTest::newRow("loopback") << "127.0.0.1";
        QTest::newRow("another loopback") << "127.0.0.2";
        QTest::newRow("empty") << "";
        QTest::newRow("own name") << QHostInfo::localHostName();
        QTest::newRow("own name with domain")
            << QHostInfo::localHostName() + QLatin1Char('.') + QHostInfo::localDomainName();
        QTest::newRow("name") << "apps.example";
        QTest::newRow("IPv6") << "::1";
    }
    void everyHostIsRemote()
    {
        QFETCH(QString, host);
        QVERIFY(env::isRemoteHost(host));
    }
};

QTEST_GUILESS_MAIN(NetworkTest)
#include "tst_network.moc"
