// What a server's silence does to the exchanges. Each waits for 30 s, so they wait side by side, each on a
// thread.
#include "server/twclient.h"

#include "env/log.h"
#include "env/paths.h"
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
    void everyExchangeGivesUpAfterThirtySecondsExceptAnAnnouncedByteArray()
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
        qint64 times[4] = {};
        std::vector<std::unique_ptr<QThread>> threads;
        const auto run = [&](int index, const std::function<void(TWClient&)>& exchange) {
            threads.emplace_back(QThread::create([&, index, exchange] {
                TWClient client;
                if (!client.connectToServer())
                    return;
                QElapsedTimer timer;
                timer.start();
                exchange(client);
                times[index] = timer.elapsed();
                server.setFault("quit", {TwFault::Close});
            }));
        };
        run(0, [&](TWClient& client) {
            accepted = client.login(QStringLiteral("ada"), QStringLiteral("tide"));
        });
        run(1, [&](TWClient& client) { text = client.sendCommand(QStringLiteral("start_session")); });
        run(2, [&](TWClient& client) { bytes = client.sendCommandForBytes(QStringLiteral("silent?")); });
        run(3, [&](TWClient& client) { cut = client.sendCommandForBytes(QStringLiteral("cut?x")); });
        for (const auto& thread : threads)
            thread->start();
        for (int i = 0; i < 3; ++i)
            QVERIFY(threads[static_cast<size_t>(i)]->wait(60000));
        QVERIFY(!threads[3]->wait(1000)); // it waits for as long as more is announced
        server.stop();
        QVERIFY(threads[3]->wait(60000));

        QVERIFY(accepted); // an empty reply accepts
        QCOMPARE(text, QString());
        QCOMPARE(bytes, QByteArray());
        QCOMPARE(cut, QByteArray("half"));
        for (int i = 0; i < 3; ++i)
            QVERIFY2(times[i] >= 29900 && times[i] < 45000, qPrintable(QString::number(times[i])));
        QVERIFY(times[3] > times[0]);
    }
};

QTEST_GUILESS_MAIN(SilenceTest)
#include "tst_silence.moc"
