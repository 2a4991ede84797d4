// The stand-in server's answers: the whole vocabulary, from the file that `make run` uses.
#include "support/quillettest.h"
#include "support/twserver/twdata.h"

#include <QtTest>

class TwDataTest : public QuilletTest
{
    Q_OBJECT

    TwData m_data;

private slots:
    void initTestCase()
    {
        QString error;
        QVERIFY2(m_data.load(QStringLiteral(TWSERVER_FILE), &error), qPrintable(error));
        m_data.extensions[1].applications.append(QStringLiteral("!notepad"));
    }

    void everyCommandHasItsReply_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("reply");
        const auto row = [](const char* request, const char* reply) {
            QTest::newRow(request) << QByteArray(request) << QByteArray(reply);
        };
        row("login?ada&&tide\n", "OK");
        row("login?ada&&token-of-a-person-who-tries-it\n", "OK");
        row("login?ada&&wrong\n", "Error: wrong user or password");
        row("login?ada&&\n", "Error: wrong user or password");
        row("login?ada", "Error: login needs a user and a password");
        row("activate_user?ada", "token-of-a-person-who-tries-it");
        row("start_session", "Session started");
        row("end_session", "Session ended");
        row("quit\n", "Bye");
        row("get_application_group_ids", "office:games:tools");
        row("get_application_groups", "Office:Games:Tools");
        row("get_applications?.txt", "notepad:wordpad");
        row("get_applications?.rtf", "wordpad:!notepad");
        row("get_applications?.xyz", "Error: unknown extension");
        row("get_applications_by_group?office", "wordpad:notepad");
        row("get_applications_by_group?none", "Error: unknown group");
        row("get_application_extensions_list", ".txt,.rtf");
        row("get_valid_applications", "notepad,wordpad,winemine,regedit,taskmgr");
        row("get_application_name?winemine", "winemine");
        row("get_application_display_name?winemine", "Minesweeper");
        row("get_application_exec_path?winemine", "%windir%\\system32\\winemine.exe");
        row("get_application_arguments?winemine", "\n"); // who asked waits until something comes
        row("get_application_onlyone?winemine", "1");
        row("get_application_onlyone?notepad", "0");
        row("get_preferred_server?winemine&0.5", "here");
        row("get_application_name?none", "Error: unknown application");
        row("get_server_address?here", "127.0.0.1");
        row("get_server_type?here", "windows");
        row("get_server_type?", "Error: unknown server");
        row("start_application?notepad&123", "OK");
        row("end_application?notepad&123", "OK");
        row("_byteArray_get_application_icon?none", "");
        row("sing_a_song", "Error: unknown command");
    }
    void everyCommandHasItsReply()
    {
        QFETCH(QByteArray, request);
        QFETCH(QByteArray, reply);
        if (request.startsWith("_byteArray_"))
            reply = TwData::framed(reply);
        QCOMPARE(m_data.reply(request), reply);
    }

    void anIconIsAByteArrayWithItsLengthInFront()
    {
        const QByteArray reply = m_data.reply("_byteArray_get_application_icon?notepad");
        const QByteArray picture = m_data.applications.value(QStringLiteral("notepad")).icon;
        QVERIFY(picture.startsWith("\x89PNG"));
        QCOMPARE(reply.size(), picture.size() + 4);
        QCOMPARE(static_cast<quint8>(reply[2]) << 8 | static_cast<quint8>(reply[3]), picture.size());
        QVERIFY(reply.endsWith(picture));
    }

    void aLengthHasFourBytesTheMostSignificantFirst()
    {
        QCOMPARE(TwData::framed(QByteArray(0x010203, 'x')).left(5), QByteArray("\0\1\2\3x", 5));
        QCOMPARE(TwData::framed(QByteArray()), QByteArray(4, '\0'));
    }

    void aBrokenFileIsRefusedWithAReason()
    {
        QString error;
        TwData data;
        QVERIFY(!data.load(sandbox().scratch() + QStringLiteral("/none.json"), &error));
        QVERIFY(!error.isEmpty());
        Sandbox::writeFile(sandbox().scratch() + QStringLiteral("/broken.json"), "{ \"users\": ");
        QVERIFY(!data.load(sandbox().scratch() + QStringLiteral("/broken.json"), &error));
        QVERIFY2(error.contains(QLatin1String("byte")), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(TwDataTest)
#include "tst_twdata.moc"
