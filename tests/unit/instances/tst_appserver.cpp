#include "instances/appserver.h"

#include "instances/channeladdress.h"
#include "support/quillettest.h"

#include <QSignalSpy>
#include <QTcpSocket>
#include <QtTest>

#include <memory>

class AppServerTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<AppServer> m_server;
    std::unique_ptr<QTcpSocket> m_peer; // the launcher on the serving host

    std::unique_ptr<QTcpSocket> connectOne()
    {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QHostAddress(QHostAddress::LocalHost), m_server->serverPort());
        if (!QTest::qWaitFor([&] { return socket->state() == QAbstractSocket::ConnectedState; }))
            qFatal("cannot connect");
        return socket;
    }

    // Sends one message and waits until it was read.
    void say(const QByteArray& message)
    {
        clearDebugOutput();
        m_peer->write(message);
        QVERIFY(QTest::qWaitFor([] { return debugOutput().size() >= 2; }));
    }

    QByteArray received(int size)
    {
        [[maybe_unused]] const bool there =
            QTest::qWaitFor([&] { return m_peer->bytesAvailable() >= size; }, 10000);
        return m_peer->readAll();
    }

private slots:
    void init()
    {
        QuilletTest::init();
        m_server = std::make_unique<AppServer>();
        QVERIFY(m_server->listen(QHostAddress(QHostAddress::LocalHost)));
        m_peer = connectOne();
        // The server has accepted when it hears the peer.
        QSignalSpy running(m_server.get(), SIGNAL(running()));
        m_peer->write("running");
        QVERIFY(running.wait());
    }

    void cleanup()
    {
        m_peer.reset();
        m_server.reset();
        QuilletTest::cleanup();
    }

    void theChannelsAddressIsEmpty()
    {
        QCOMPARE(instances::channelAddress(), QHostAddress());
        QCOMPARE(instances::channelAddress().toString(), QString());
    }

    void messagesOfThePeerBecomeSignals_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<int>("running");
        QTest::addColumn<int>("close");
        QTest::addColumn<QStringList>("names");
        const auto row = [](const char* name, const QByteArray& message, int running, int close,
                            const QStringList& names = QStringList()) {
            QTest::newRow(name) << message << running << close << names;
        };
        row("running", "running", 1, 0);
        row("running with a line end", "running\n", 1, 0);
        row("running among blanks", " \trunning\r\n", 1, 0);
        row("running in capitals", "Running", 0, 0);
        row("running and more", "running!", 0, 0);
        row("close", "close", 0, 1);
        row("close with a line end", "close\r\n", 0, 1);
        row("close in capitals", "CLOSE", 0, 0);
        row("two messages in one read", "runningclose", 0, 0);
        row("a name", "filename=report.odt", 0, 0, {QStringLiteral("report.odt")});
        row("a name with a line end", "filename=report.odt\n", 0, 0, {QStringLiteral("report.odt\n")});
        row("a name with blanks", "filename= a b ", 0, 0, {QStringLiteral(" a b ")});
        row("no name", "filename=", 0, 0, {QString()});
        row("a blank in front", " filename=report.odt", 0, 0);
        row("another case", "Filename=report.odt", 0, 0);
        row("the word twice", "filename=a filename=b", 0, 0, {QStringLiteral("a b")});
        row("a name that is a message", "filename=running", 0, 0, {QStringLiteral("running")});
        row("letters of other scripts", "filename=a\xc3\xb1o.odt", 0, 0,
            {QString::fromUtf8("a\xc3\xb1o.odt")});
        row("not UTF-8", "filename=\xff", 0, 0, {QString(QChar(QChar::ReplacementCharacter))});
        row("unknown", "hello", 0, 0);
        row("white space alone", "\n", 0, 0);
        row("a zero byte", QByteArray("\0running", 8), 0, 0);
    }
    void messagesOfThePeerBecomeSignals()
    {
        QFETCH(QByteArray, message);
        const QSignalSpy running(m_server.get(), SIGNAL(running()));
        const QSignalSpy close(m_server.get(), SIGNAL(closeTab()));
        const QSignalSpy rename(m_server.get(), SIGNAL(renameTab(QString)));
        say(message);
        QTEST(running.count(), "running");
        QTEST(close.count(), "close");
        QStringList renamed;
        for (const auto& arguments : rename)
            renamed.append(arguments.first().toString());
        QTEST(renamed, "names");
        QCOMPARE(debugOutput().size(), 2);
        QCOMPARE(debugOutput().first(), QStringLiteral("Ready to read %1 bytes").arg(message.size()));
        if (!message.contains('\0'))
            QCOMPARE(debugOutput().last(), QStringLiteral("Command: '%1'").arg(QString::fromUtf8(message)));
    }

    void aMessageInTwoReadsIsTwoMessages()
    {
        const QSignalSpy running(m_server.get(), SIGNAL(running()));
        say("run");
        say("ning");
        QCOMPARE(running.count(), 0);
    }

    void aHugeMessageIsCalm()
    {
        const QSignalSpy running(m_server.get(), SIGNAL(running()));
        m_peer->write(QByteArray(4 << 20, 'x'));
        QVERIFY(QTest::qWaitFor([this] { return m_peer->bytesToWrite() == 0; }));
        say("x");
        QCOMPARE(running.count(), 0);
    }

    void nothingIsAnswered()
    {
        say("hello");
        m_server->killApp();
        QCOMPARE(received(4), QByteArray("kill")); // and nothing before it
    }

    void theSlotsAskThePeer_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("closeApp") << QByteArray("closeApp") << QByteArray("close");
        QTest::newRow("killApp") << QByteArray("killApp") << QByteArray("kill");
        QTest::newRow("disconnectSession") << QByteArray("disconnectSession") << QByteArray("disconnect");
    }
    void theSlotsAskThePeer()
    {
        QFETCH(QByteArray, slot);
        QFETCH(QByteArray, message);
        QVERIFY(QMetaObject::invokeMethod(m_server.get(), slot));
        QCOMPARE(received(message.size()), message);
        const QByteArray line =
            "Info: Closing socket on Address , port " + QByteArray::number(m_server->serverPort()) + '\n';
        QCOMPARE(sandbox().log().endsWith(line), slot == "closeApp");
        QCOMPARE(sandbox().log().isEmpty(), slot != "closeApp");
    }

    void withoutAPeerTheSlotsWriteNothing_data()
    {
        QTest::addColumn<bool>("wasThere");
        QTest::newRow("nobody came") << false;
        QTest::newRow("the peer went") << true;
    }
    void withoutAPeerTheSlotsWriteNothing()
    {
        QFETCH(bool, wasThere);
        AppServer nobodys;
        if (wasThere) {
            m_peer->disconnectFromHost();
            QVERIFY(QTest::qWaitFor([this] { return m_server->findChildren<QTcpSocket*>().isEmpty(); }));
        }
        AppServer& server = wasThere ? *m_server : nobodys;
        server.closeApp();
        server.killApp();
        server.disconnectSession();
        server.readData();
        QVERIFY(sandbox().log().contains("Closing socket on Address , port " +
                                         QByteArray::number(server.serverPort()) + '\n'));
    }

    void whatAPeerSaysLastIsHeard()
    {
        const QSignalSpy close(m_server.get(), SIGNAL(closeTab()));
        m_peer->write("close");
        m_peer->disconnectFromHost();
        QVERIFY(QTest::qWaitFor([&] { return close.count() == 1; }));
    }

    void aSecondPeerIsTurnedAwayAndTheFirstStays()
    {
        QTcpSocket second;
        second.connectToHost(QHostAddress(QHostAddress::LocalHost), m_server->serverPort());
        QVERIFY(second.state() != QAbstractSocket::UnconnectedState);
        QVERIFY(QTest::qWaitFor([&] { return second.state() == QAbstractSocket::UnconnectedState; }));
        m_server->killApp();
        QCOMPARE(received(4), QByteArray("kill"));
    }

    void anotherPeerMayComeWhenTheFirstHasGone()
    {
        m_peer->disconnectFromHost();
        QVERIFY(QTest::qWaitFor([this] { return m_server->findChildren<QTcpSocket*>().isEmpty(); }));
        m_peer = connectOne();
        say("hello");
        m_server->killApp();
        QCOMPARE(received(4), QByteArray("kill"));
    }

    void theSignalsAndSlotsStandInTheirOrder()
    {
        const QStringList expected = {
            QStringLiteral("running()"),  QStringLiteral("closeTab()"), QStringLiteral("renameTab(QString)"),
            QStringLiteral("closeApp()"), QStringLiteral("killApp()"),  QStringLiteral("disconnectSession()"),
            QStringLiteral("readData()")};
        const QMetaObject& meta = AppServer::staticMetaObject;
        QStringList found;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            found.append(QString::fromLatin1(meta.method(i).methodSignature()));
        QCOMPARE(found, expected);
    }
};

QTEST_GUILESS_MAIN(AppServerTest)
#include "tst_appserver.moc"
