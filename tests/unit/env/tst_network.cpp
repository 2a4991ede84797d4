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
        env::setCredentialsUserName(QStringLiteral("ada"));
        QCOMPARE(env::homeSharePath(), QStringLiteral("\\\\files\\ada"));
    }

    void theHomeShareReadsTheUserFromTheCredentialsFile()
    {
        sandbox().writeSettings("SambaServer=files\n");
        sandbox().writeCredentials("bob\nsecret\n");
        env::setCredentialsUserName(QString());
        QCOMPARE(env::homeSharePath(), QStringLiteral("\\\\files\\bob"));
    }

    void theHomeShareWithoutAnythingIsThreeBackslashes()
    {
        env::setCredentialsUserName(QString());
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

    void everyHostCountsAsLocal_data()
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
    void everyHostCountsAsLocal()
    {
        QFETCH(QString, host);
        QVERIFY(env::isLocalHost(host));
    }

    // Whatever this machine is called: even for one named like its own loopback address no step says no,
    // because its name with the domain is longer than its name.
    void everyHostCountsAsLocalWhateverTheMachineIsCalled_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("domain");
        QTest::newRow("own name") << "desk"
                                  << "desk"
                                  << "office.example";
        QTest::newRow("own name in other case") << "DESK"
                                                << "desk"
                                                << "";
        QTest::newRow("own name with domain") << "desk.office.example"
                                              << "desk"
                                              << "office.example";
        QTest::newRow("loopback, named otherwise") << "127.0.0.1"
                                                   << "desk"
                                                   << "office.example";
        QTest::newRow("loopback, named so") << "127.0.0.1"
                                            << "127.0.0.1"
                                            << "";
        QTest::newRow("loopback, named so, with a domain") << "127.0.0.1"
                                                           << "127.0.0.1"
                                                           << "office.example";
        QTest::newRow("loopback in two parts") << "127.0.0.1"
                                               << "127.0.0"
                                               << "1";
    }
    void everyHostCountsAsLocalWhateverTheMachineIsCalled()
    {
        QFETCH(QString, host);
        QFETCH(QString, name);
        QFETCH(QString, domain);
        for (const QString& address : {QStringLiteral("127.0.0.1"), QStringLiteral("10.0.0.5")})
            QVERIFY(env::isLocalHost(host, {name, domain, {QHostAddress(address)}}));
        QVERIFY(env::isLocalHost(host, {name, domain, {}}));
    }
};

QTEST_GUILESS_MAIN(NetworkTest)
#include "tst_network.moc"
