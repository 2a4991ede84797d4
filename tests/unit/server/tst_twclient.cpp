#include "server/twclient.h"

#include "support/quillettest.h"
#include "support/twserver/twserver.h"

#include <QElapsedTimer>
#include <QtTest>

#include <memory>

#ifndef Q_OS_WIN
#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

class TWClientTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<TwServer> m_server;
    std::unique_ptr<TWClient> m_client;

    void configure(int port, const QByteArray& address = "127.0.0.1")
    {
        sandbox().writeSettings("[Server]\nTidewellServerPort=" + QByteArray::number(port) +
                                "\nTidewellServerAddress=" + address + "\n");
    }

    // The server answers every request with these bytes.
    void answer(const QByteArray& bytes) { m_server->setFault("*", {TwFault::Instead, 0, bytes}); }

    QStringList logMessages()
    {
        QStringList messages;
        for (const QByteArray& line : sandbox().log().split('\n')) {
            if (!line.isEmpty())
                messages.append(QString::fromUtf8(line).section(QStringLiteral(" - Info: "), 1));
        }
        return messages;
    }

private slots:
    void init()
    {
        QuilletTest::init();
        m_server = std::make_unique<TwServer>();
        QVERIFY(m_server->start());
        configure(m_server->port());
        m_client = std::make_unique<TWClient>();
        if (QByteArray(QTest::currentTestFunction()).startsWith("unconnected"))
            return;
        QVERIFY(m_client->connectToServer());
        clearDebugOutput();
    }

    void cleanup()
    {
        m_server.reset(); // first, so that no farewell waits for a silent server
        m_client.reset();
        QuilletTest::cleanup();
    }

    // --- Connecting

    void unconnectedClientDoesNotConnectByItself()
    {
        QVERIFY(!m_client->isConnected());
        QVERIFY(m_server->nobodyConnected());
    }

    void unconnectedClientConnectsToTheSettingsAddressAndPort()
    {
        QVERIFY(m_client->connectToServer());
        QVERIFY(m_client->isConnected());
        QCOMPARE(debugOutput(), QStringList("Connected"));
        QVERIFY(m_client->waitForConnected(30000));
        QVERIFY(m_server->waitFor(TwEvent::Connected, QByteArray()));
        QVERIFY(m_server->requests().isEmpty()); // there is no greeting
    }

    void unconnectedClientCutsThePortToSixteenBits()
    {
        configure(m_server->port() + 65536);
        QVERIFY(m_client->connectToServer());
    }

    void unconnectedClientCannotConnect_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::newRow("no settings") << QByteArray("x=1\n");
        QTest::newRow("port 0") << QByteArray(
            "[Server]\nTidewellServerPort=0\nTidewellServerAddress=127.0.0.1\n");
        QTest::newRow("port is a word")
            << QByteArray("[Server]\nTidewellServerPort=abc\nTidewellServerAddress=127.0.0.1\n");
        QTest::newRow("no address") << QByteArray("[Server]\nTidewellServerPort=9\n");
        QTest::newRow("nobody listens")
            << QByteArray("[Server]\nTidewellServerPort=1\nTidewellServerAddress=127.0.0.1\n");
        QTest::newRow("strange address")
            << QByteArray("[Server]\nTidewellServerPort=9\nTidewellServerAddress=\"%&/ []\"\n");
    }
    void unconnectedClientCannotConnect()
    {
        QFETCH(QByteArray, settings);
        sandbox().writeSettings(settings);
        QVERIFY(!m_client->connectToServer());
        QVERIFY(!m_client->isConnected());
        QCOMPARE(debugOutput(), QStringList("Cannot connect"));
        QCOMPARE(sandbox().log(), QByteArray());
    }

#ifndef Q_OS_WIN
    // A server whose queue is full lets connections hang; 30 s would pass before Qt gave up by itself.
    void unconnectedClientGivesUpSoon()
    {
        const int listener = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        QCOMPARE(bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
        QCOMPARE(listen(listener, 0), 0);
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
        QList<int> fillers;
        for (int i = 0; i < 4; ++i) {
            fillers.append(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
            (void)::connect(fillers.last(), reinterpret_cast<sockaddr*>(&address), size);
        }
        configure(ntohs(address.sin_port));
        QElapsedTimer timer;
        timer.start();
        const bool connected = m_client->connectToServer();
        const qint64 elapsed = timer.elapsed();
        for (const int filler : fillers)
            close(filler);
        close(listener);
        QVERIFY(!connected);
        QVERIFY2(elapsed >= 14 && elapsed < 1000, qPrintable(QString::number(elapsed)));
    }
#endif

    void unconnectedClientAnswersNothingAndWritesNothing()
    {
        QVERIFY(!m_client->login(QStringLiteral("ada"), QStringLiteral("tide")));
        QCOMPARE(m_client->sendCommand(QStringLiteral("start_session")), QString());
        QCOMPARE(m_client->sendCommandForBytes(QStringLiteral("get_application_icon?x")), QByteArray());
        m_client.reset();
        QVERIFY(m_server->nobodyConnected());
        QCOMPARE(sandbox().log(), QByteArray());
        QCOMPARE(debugOutput(), QStringList());
    }

    // --- Login

    void loginSendsUserAndPasswordInClearText()
    {
        answer("OK");
        QVERIFY(m_client->login(QString::fromUtf8("señora&co"), QString::fromUtf8(" pa&&ß ")));
        QCOMPARE(m_server->requests(), QList<QByteArray>({"login?señora&co&& pa&&ß \n"}));
        QCOMPARE(sandbox().log(), QByteArray());
    }

    void loginIsRefusedByErrorAlone_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("Error") << QByteArray("Error") << false;
        QTest::newRow("Error: reason") << QByteArray("Error: reason") << false;
        QTest::newRow("Errors") << QByteArray("Errors") << false;
        QTest::newRow("error") << QByteArray("error") << true;
        QTest::newRow("ERROR") << QByteArray("ERROR") << true;
        QTest::newRow("blank in front") << QByteArray(" Error") << true;
        QTest::newRow("OK") << QByteArray("OK") << true;
        QTest::newRow("line feed") << QByteArray("\n") << true;
        QTest::newRow("noise") << QByteArray("\xff\0\xfe", 3) << true;
    }
    void loginIsRefusedByErrorAlone()
    {
        QFETCH(QByteArray, reply);
        answer(reply);
        QTEST(m_client->login(QStringLiteral("ada"), QStringLiteral("tide")), "accepted");
    }

    void loginIsAcceptedWhenTheServerHangsUpWithoutAWord()
    {
        m_server->setFault("login?", {TwFault::Close});
        QVERIFY(m_client->login(QStringLiteral("ada"), QStringLiteral("tide")));
    }

    void loginReadsWhatHasArrivedAfterTheFirstWait_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("milliseconds");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("late") << int(TwFault::Late) << 500 << false;
        QTest::newRow("cut: Error: wro") << int(TwFault::Cut) << 0 << false;
        QTest::newRow("split: E") << int(TwFault::Split) << 5000 << true;
        QTest::newRow("too long") << int(TwFault::TooLong) << 0 << false;
        QTest::newRow("refused") << int(TwFault::Refused) << 0 << false;
        QTest::newRow("followed by the end") << int(TwFault::HangUp) << 0 << false;
    }
    void loginReadsWhatHasArrivedAfterTheFirstWait()
    {
        QFETCH(int, kind);
        QFETCH(int, milliseconds);
        m_server->setFault("login?", {static_cast<TwFault::Kind>(kind), milliseconds, "more"});
        // Nobody is known there, so the whole reply is a refusal.
        QTEST(m_client->login(QStringLiteral("ada"), QStringLiteral("tide")), "accepted");
    }

    void loginTakesRepliesOfAnySize_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {255, 256, 257, 70000})
            QTest::newRow(QByteArray::number(size)) << size;
    }
    void loginTakesRepliesOfAnySize()
    {
        QFETCH(int, size);
        answer("Error" + QByteArray(size - 5, 'x'));
        QVERIFY(!m_client->login(QStringLiteral("ada"), QStringLiteral("tide")));
    }

    void loginFailsWhenItCannotBeWritten()
    {
        m_server->setFault("*", {TwFault::Close});
        m_client->sendCommand(QStringLiteral("x"));
        QVERIFY(m_server->waitFor(TwEvent::Disconnected, QByteArray()));
        QVERIFY(m_client->isConnected()); // never cleared
        QVERIFY(!m_client->login(QStringLiteral("ada"), QStringLiteral("tide")));
    }

    // --- Text exchange

    void aTextCommandIsSentBareAndUnterminated()
    {
        answer("fine");
        QCOMPARE(m_client->sendCommand(QString::fromUtf8("get_applications?.año")), QStringLiteral("fine"));
        QCOMPARE(m_server->requests(), QList<QByteArray>({"get_applications?.año"}));
        QCOMPARE(sandbox().log(), QByteArray());
    }

    void aTextReplyIsTrimmedAndDecoded_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        QTest::newRow("blanks and line end") << QByteArray("  two words \r\n") << "two words";
        QTest::newRow("tabs") << QByteArray("\t\tx\t") << "x";
        QTest::newRow("blanks alone") << QByteArray("   ") << "";
        QTest::newRow("refusal is a reply like others") << QByteArray("Error: no") << "Error: no";
        QTest::newRow("letters") << QByteArray("señal 漢字 😀") << QString::fromUtf8("señal 漢字 😀");
        QTest::newRow("255") << QByteArray(255, 'x') << QString(255, QLatin1Char('x'));
        QTest::newRow("256") << QByteArray(256, 'x') << QString(256, QLatin1Char('x'));
        QTest::newRow("257") << QByteArray(257, 'x') << QString(257, QLatin1Char('x'));
        QTest::newRow("letter across two reads")
            << QByteArray(255, 'x') + "ñy" << QString(255, QLatin1Char('x')) + QString::fromUtf8("ñy");
        QTest::newRow("blank at the end of a read")
            << QByteArray(255, 'x') + " y" << QString(255, QLatin1Char('x')) + QStringLiteral(" y");
        QTest::newRow("invalid UTF-8") << QByteArray("a\xff\xc3") << QString::fromUtf8("a\xff\xc3");
        QTest::newRow("a zero byte ends the text") << QByteArray("a\0b", 3) << "a";
    }
    void aTextReplyIsTrimmedAndDecoded()
    {
        QFETCH(QByteArray, bytes);
        answer(bytes);
        QTEST(m_client->sendCommand(QStringLiteral("x")), "expected");
    }

    void aLongTextReplyIsReadAsFarAsItHasArrived()
    {
        answer(QByteArray(70000, 'x'));
        const QString reply = m_client->sendCommand(QStringLiteral("x"));
        QVERIFY(!reply.isEmpty() && reply.size() <= 70000);
        QCOMPARE(reply, QString(reply.size(), QLatin1Char('x')));
    }

    void aLateTextReplyIsWaitedFor()
    {
        m_server->setFault("*", {TwFault::Late, 500, QByteArray()});
        QCOMPARE(m_client->sendCommand(QStringLiteral("start_session")), QStringLiteral("Session started"));
    }

    void aSplitTextReplyIsCutAfterItsFirstPiece()
    {
        m_server->setFault("*", {TwFault::Split, 5000, QByteArray()});
        QCOMPARE(m_client->sendCommand(QStringLiteral("start_session")), QStringLiteral("S"));
    }

    void aCutTextReplyIsWhatCame()
    {
        m_server->setFault("*", {TwFault::Cut});
        QCOMPARE(m_client->sendCommand(QStringLiteral("start_session")), QStringLiteral("Session"));
    }

    void aTextReplyThatIsTooLongIsReadWhole()
    {
        m_server->setFault("*", {TwFault::TooLong, 0, " and more\n"});
        QCOMPARE(m_client->sendCommand(QStringLiteral("start_session")),
                 QStringLiteral("Session started and more"));
    }

    void aRefusedTextCommandAnswersTheRefusal()
    {
        m_server->setFault("*", {TwFault::Refused, 0, "not today"});
        QCOMPARE(m_client->sendCommand(QStringLiteral("start_session")), QStringLiteral("Error: not today"));
    }

    void afterTheServerHungUpTextCommandsAnswerNothing()
    {
        m_server->setFault("*", {TwFault::Close});
        QCOMPARE(m_client->sendCommand(QStringLiteral("start_session")), QString());
        QVERIFY(m_server->waitFor(TwEvent::Disconnected, QByteArray()));
        QVERIFY(m_client->isConnected());
        for (int i = 0; i < 3; ++i)
            QCOMPARE(m_client->sendCommand(QStringLiteral("start_session")), QString());
        QCOMPARE(m_client->sendCommandForBytes(QStringLiteral("get_application_icon?x")), QByteArray());
        QCOMPARE(logMessages(), QStringList({"resSize size: 0", "Response size: 0"}));
    }

    void aServerThatVanishesEndsTheExchange()
    {
        m_server.reset();
        QCOMPARE(m_client->sendCommand(QStringLiteral("start_session")), QString());
        QVERIFY(m_client->isConnected());
    }

    // --- Byte arrays

    void aByteArrayCommandCarriesItsPrefix()
    {
        answer(TwData::framed("picture"));
        QCOMPARE(m_client->sendCommandForBytes(QString::fromUtf8("get_application_icon?año")),
                 QByteArray("picture"));
        QCOMPARE(m_server->requests(), QList<QByteArray>({"_byteArray_get_application_icon?año"}));
    }

    void aByteArrayComesWholeWhateverItsSize_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {1, 255, 256, 257, 65536, 70000, 3000000})
            QTest::newRow(QByteArray::number(size)) << size;
    }
    void aByteArrayComesWholeWhateverItsSize()
    {
        QFETCH(int, size);
        QByteArray payload;
        for (int i = 0; i < size; ++i)
            payload.append(static_cast<char>(i * 7 >> 3));
        answer(TwData::framed(payload));
        QCOMPARE(m_client->sendCommandForBytes(QStringLiteral("x")), payload);
        const QStringList log = logMessages();
        QCOMPARE(log.value(0), QStringLiteral("resSize size: 4"));
        QCOMPARE(log.value(1), QStringLiteral("Response size: %1").arg(size));
        QCOMPARE(log.last(), QStringLiteral("Message size: %1").arg(size));
    }

    void anEmptyByteArrayHasNoMessageSizeLine()
    {
        answer(TwData::framed(QByteArray()));
        QCOMPARE(m_client->sendCommandForBytes(QStringLiteral("x")), QByteArray());
        QCOMPARE(logMessages(), QStringList({"resSize size: 4", "Response size: 0"}));
    }

    void aByteArrayThatComesInPiecesIsCollected_data()
    {
        QTest::addColumn<int>("pieceSize");
        QTest::newRow("the length alone first") << 4;
        QTest::newRow("small pieces") << 7;
        QTest::newRow("large pieces") << 100;
    }
    void aByteArrayThatComesInPiecesIsCollected()
    {
        QFETCH(int, pieceSize);
        const QByteArray icon(256, 'b'); // its length is 00 00 01 00
        m_server->data.applications[QStringLiteral("x")].icon = icon;
        m_server->setFault("*", {TwFault::Split, 5, QByteArray(), pieceSize});
        QCOMPARE(m_client->sendCommandForBytes(QStringLiteral("get_application_icon?x")), icon);
        const QStringList log = logMessages();
        QCOMPARE(log.value(1), QStringLiteral("Response size: 256"));
        QCOMPARE(log.last(), QStringLiteral("Message size: 256"));
    }

    void everyTurnOfTheByteArraysLoopHasItsLine()
    {
        m_server->data.applications[QStringLiteral("x")].icon = QByteArray(256, 'b');
        m_server->setFault("*", {TwFault::Split, 1500, QByteArray(), 104});
        QCOMPARE(m_client->sendCommandForBytes(QStringLiteral("get_application_icon?x")).size(), 256);
        // A turn that reads, a turn that waits, a turn that reads, ...
        QCOMPARE(logMessages(), QStringList({"resSize size: 4", "Response size: 256", "Message size: 100",
                                             "Message size: 100", "Message size: 204", "Message size: 204",
                                             "Message size: 256"}));
    }

    void aLateByteArrayIsWaitedFor()
    {
        m_server->data.applications[QStringLiteral("x")].icon = QByteArray(256, 'b');
        m_server->setFault("*", {TwFault::Late, 500});
        QCOMPARE(m_client->sendCommandForBytes(QStringLiteral("get_application_icon?x")),
                 QByteArray(256, 'b'));
    }

    // The length is what the first read returned, not what will come.
    void aByteArrayInSingleBytesHasALengthOfItsFirstByte()
    {
        m_server->data.applications[QStringLiteral("x")].icon = QByteArray(256, 'b');
        m_server->setFault("*", {TwFault::Split, 5000, QByteArray()});
        QCOMPARE(m_client->sendCommandForBytes(QStringLiteral("get_application_icon?x")), QByteArray());
        QCOMPARE(logMessages(), QStringList({"resSize size: 1", "Response size: 0"}));
    }

    void aByteArraysFirstPieceDecidesItsLength_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("expected");
        QTest::addColumn<QStringList>("log");
        QTest::newRow("FF FF FF FF is -1") << QByteArray("\xff\xff\xff\xffrest") << QByteArray()
                                           << QStringList({"resSize size: 4", "Response size: -1"});
        QTest::newRow("80 00 00 01 is negative")
            << QByteArray("\x80\0\0\1x", 5) << QByteArray()
            << QStringList({"resSize size: 4", "Response size: -2147483647"});
        QTest::newRow("three zeros") << QByteArray("\0\0\0", 3) << QByteArray()
                                     << QStringList({"resSize size: 3", "Response size: 0"});
        QTest::newRow("00 00 00 03") << QByteArray("\0\0\0\3abc", 7) << QByteArray("abc")
                                     << QStringList(
                                            {"resSize size: 4", "Response size: 3", "Message size: 3"});
        QTest::newRow("bytes beyond the length stay")
            << QByteArray("\0\0\0\3abcdef", 10) << QByteArray("abcdef")
            << QStringList({"resSize size: 4", "Response size: 3", "Message size: 6"});
    }
    void aByteArraysFirstPieceDecidesItsLength()
    {
        QFETCH(QByteArray, bytes);
        answer(bytes);
        QTEST(m_client->sendCommandForBytes(QStringLiteral("x")), "expected");
        QTEST(logMessages(), "log");
    }

    void aServerThatHangsUpInTheMiddleEndsTheWait_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("half of it") << QByteArray("\0\0\0\x10half", 8) << QByteArray("half");
        QTest::newRow("the length alone") << QByteArray("\0\0\0\x10", 4) << QByteArray();
        QTest::newRow("part of the length") << QByteArray("\0\0\1", 3) << QByteArray();
        QTest::newRow("the largest length") << QByteArray("\x7f\xff\xff\xffx", 5) << QByteArray("x");
    }
    void aServerThatHangsUpInTheMiddleEndsTheWait()
    {
        QFETCH(QByteArray, bytes);
        answer(bytes);
        const auto hangUp = std::unique_ptr<QThread>(QThread::create([this, bytes] {
            m_server->waitFor(TwEvent::Reply, bytes);
            m_server->stop();
        }));
        hangUp->start();
        const QByteArray result = m_client->sendCommandForBytes(QStringLiteral("x"));
        hangUp->wait();
        QTEST(result, "expected");
        QVERIFY(logMessages().size() < 10); // it does not spin
    }

    void aServerThatHangsUpAtOnceGivesAnEmptyByteArray()
    {
        m_server->setFault("*", {TwFault::Close});
        QCOMPARE(m_client->sendCommandForBytes(QStringLiteral("x")), QByteArray());
        QCOMPARE(logMessages(), QStringList({"resSize size: 0", "Response size: 0"}));
    }

    void aRefusalInPlaceOfAByteArrayIsTakenForALength()
    {
        // "Erro" is a length of 1,165,128,303 bytes: nothing is set aside for them, and the wait ends with
        // the server.
        m_server->setFault("*", {TwFault::Refused, 0, "no"});
        const auto hangUp = std::unique_ptr<QThread>(QThread::create([this] {
            m_server->waitFor(TwEvent::Reply, "Error: no");
            m_server->stop();
        }));
        hangUp->start();
        const QByteArray result = m_client->sendCommandForBytes(QStringLiteral("x"));
        hangUp->wait();
        QCOMPARE(result, QByteArray("r: no"));
        QCOMPARE(logMessages().value(1), QStringLiteral("Response size: 1165128303"));
    }

    // --- Farewell

    void theFarewellIsQuitAndItsReplyIsAwaited()
    {
        m_server->setFault("quit", {TwFault::Late, 300, QByteArray()});
        m_client.reset();
        QCOMPARE(m_server->requests(), QList<QByteArray>({"quit\n"}));
        QVERIFY(m_server->waitFor(TwEvent::Reply, "Bye", 0)); // it has been sent by now
        QVERIFY(m_server->waitFor(TwEvent::Disconnected, QByteArray()));
    }

    void theFarewellTakesAnyReply_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("the end of the connection") << int(TwFault::Close);
        QTest::newRow("cut") << int(TwFault::Cut);
        QTest::newRow("split") << int(TwFault::Split);
        QTest::newRow("too long") << int(TwFault::TooLong);
        QTest::newRow("refused") << int(TwFault::Refused);
    }
    void theFarewellTakesAnyReply()
    {
        QFETCH(int, kind);
        m_server->setFault("quit", {static_cast<TwFault::Kind>(kind), 5000, "more"});
        m_client.reset();
        QCOMPARE(m_server->requests(), QList<QByteArray>({"quit\n"}));
        QVERIFY(m_server->waitFor(TwEvent::Disconnected, QByteArray()));
    }
};

QTEST_GUILESS_MAIN(TWClientTest)
#include "tst_twclient.moc"
