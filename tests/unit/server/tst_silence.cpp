// What a server's silence does to the exchanges. Each waits for 30 s, so they wait side by side, each on a
// thread.
#include "server/twclient.h"

#include "support/quillettest.h"
#include "support/twserver/twserver.h"

#include <QElapsedTimer>
#include <QThread>
#include <QtTest>

#include <memory>

class SilenceTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void everyExchangeAndTheFarewellGiveUpAfterThirtySecondsButAnAnnouncedByteArrayDoesNot()
    {
        TwServer server;
        QVERIFY(server.start());
        sandbox().writeSettings("[Server]\nTidewellServerPort=" + QByteArray::number(server.port()) +
                                "\nTidewellServerAddress=127.0.0.1\n");
        server.setFault("*", {TwFault::Silent});
        server.setFault("_byteArray_cut?", {TwFault::Instead, 0, QByteArray("\0\0\0\x10half", 8)});

        bool accepted = false;
        QString text = QStringLiteral("not empty");
        QByteArray bytes("not empty");
        QByteArray cut;
        qint64 times[5] = {};
        std::vector<std::unique_ptr<QThread>> threads;
        const auto run = [&](const std::function<void(TWClient&)>& exchange, bool farewell = false) {
            const size_t index = threads.size();
            threads.emplace_back(QThread::create([&, index, exchange, farewell] {
                auto client = std::make_unique<TWClient>();
                if (!client->connectToServer())
                    return;
                QElapsedTimer timer;
                timer.start();
                exchange(*client);
                if (farewell)
                    client.reset();
                times[index] = timer.elapsed();
                server.setFault("quit", {TwFault::Close});
            }));
        };
        run([&](TWClient& client) {
            accepted = client.login(QStringLiteral("ada"), QStringLiteral("tide"));
        });
        run([&](TWClient& client) { text = client.sendCommand(QStringLiteral("start_session")); });
        run([&](TWClient& client) { bytes = client.sendCommandForBytes(QStringLiteral("silent?")); });
        run([](TWClient&) {}, true);
        run([&](TWClient& client) { cut = client.sendCommandForBytes(QStringLiteral("cut?x")); });
        for (const auto& thread : threads)
            thread->start();
        const size_t waiting = threads.size() - 1;
        bool ended = true;
        for (size_t i = 0; i < waiting; ++i)
            ended = threads[i]->wait(60000) && ended;
        const bool stillWaiting = !threads[waiting]->wait(1000);
        server.stop();
        ended = threads[waiting]->wait(60000) && ended;
        if (!ended)
            qFatal("an exchange does not end"); // its thread cannot be left behind

        QVERIFY(stillWaiting); // for as long as more is announced
        QVERIFY(accepted);     // an empty reply accepts
        QCOMPARE(text, QString());
        QCOMPARE(bytes, QByteArray());
        QCOMPARE(cut, QByteArray("half"));
        for (size_t i = 0; i < waiting; ++i)
            QVERIFY2(times[i] >= 29900 && times[i] < 45000, qPrintable(QString::number(times[i])));
    }
};

QTEST_GUILESS_MAIN(SilenceTest)
#include "tst_silence.moc"
