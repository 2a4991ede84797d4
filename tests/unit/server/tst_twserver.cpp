// The stand-in server as a program.
#include "support/quillettest.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QtTest>

class TwServerProgramTest : public QuilletTest
{
    Q_OBJECT

    QProcess m_program;
    QByteArray m_output;

    // Starts the program and returns its port, 0 when it does not listen.
    quint16 start(const QStringList& arguments)
    {
        m_output.clear();
        m_program.start(QStringLiteral(TWSERVER), QStringList(QStringLiteral(TWSERVER_FILE)) + arguments);
        const QRegularExpression form(QStringLiteral("listening on 127\\.0\\.0\\.1, port (\\d+)\n"));
        while (m_program.waitForReadyRead()) {
            m_output += m_program.readAllStandardOutput();
            const auto match = form.match(QString::fromUtf8(m_output));
            if (match.hasMatch())
                return match.captured(1).toUShort();
        }
        return 0;
    }

    // Waits until the program has said this, between a time and nothing more.
    bool says(const QByteArray& text)
    {
        const QRegularExpression form(QStringLiteral("^twserver: \\d+\\.\\d{3} s, %1$")
                                          .arg(QRegularExpression::escape(QString::fromUtf8(text))),
                                      QRegularExpression::MultilineOption);
        do {
            m_output += m_program.readAllStandardOutput();
            if (form.match(QString::fromUtf8(m_output)).hasMatch())
                return true;
        } while (m_program.waitForReadyRead(10000));
        return false;
    }

private slots:
    void cleanup()
    {
        m_program.kill();
        m_program.waitForFinished();
        QuilletTest::cleanup();
    }

    void itSaysWhoMayLogInWhoConnectedAndWhatWasAsked()
    {
        const quint16 port = start({});
        QVERIFY(port > 0);
        QVERIFY(m_output.contains("twserver: everybody may log in with the password: tide\n"));
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), port);
        QVERIFY(socket.waitForConnected());
        QVERIFY(says("client 1 connected"));
        socket.write("login?ada&&tide\n");
        QVERIFY(socket.waitForReadyRead());
        QCOMPARE(socket.readAll(), QByteArray("OK"));
        QVERIFY(says("client 1 asks \"login?ada&&tide\\n\""));
        QVERIFY(says("client 1 gets \"OK\""));
        socket.write("\x01\x7f");
        QVERIFY(socket.waitForBytesWritten());
        QVERIFY(says("client 1 asks \"\\x01\\x7f\""));
        socket.disconnectFromHost();
        QVERIFY(says("client 1 disconnected"));
    }

    void aFaultOfTheCommandLineHappens_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("refused") << "start_session=refused" << QByteArray("Error: on request");
        QTest::newRow("cut") << "*=cut" << QByteArray("Session");
        QTest::newRow("late") << "start_session=late:200" << QByteArray("Session started");
        QTest::newRow("split") << "start_session=split:5000" << QByteArray("S");
        QTest::newRow("too long") << "start_session=toolong" << QByteArray("Session startedon request");
        QTest::newRow("hang up") << "start_session=hangup" << QByteArray("Session started");
        QTest::newRow("close") << "start_session=close" << QByteArray();
        QTest::newRow("of another command") << "end_session=close" << QByteArray("Session started");
    }
    void aFaultOfTheCommandLineHappens()
    {
        QFETCH(QString, fault);
        QFETCH(QByteArray, reply);
        const quint16 port = start({"--fault", fault});
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), port);
        QVERIFY(socket.waitForConnected());
        socket.write("start_session");
        socket.waitForReadyRead();
        QCOMPARE(socket.readAll(), reply);
    }

    void aWrongCallIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("no such kind") << QStringList({"--fault", "x=strange"});
        QTest::newRow("no command") << QStringList({"--fault", "=late"});
        QTest::newRow("no number") << QStringList({"--fault", "x=late:soon"});
        QTest::newRow("negative") << QStringList({"--fault", "x=late:-1"});
        QTest::newRow("too much") << QStringList({"--fault", "x=late:1:2"});
        QTest::newRow("port is a word") << QStringList({"--port", "x"});
        QTest::newRow("second file") << QStringList({"x.json"});
    }
    void aWrongCallIsRefused()
    {
        QFETCH(QStringList, arguments);
        QCOMPARE(start(arguments), quint16(0));
        m_program.waitForFinished();
        QVERIFY(m_program.exitCode() != 0);
        QVERIFY(!m_program.readAllStandardError().isEmpty() || !m_output.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TwServerProgramTest)
#include "tst_twserver.moc"
