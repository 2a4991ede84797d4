// The session's start, with a server on loopback. What a failed one leads to is the controller's.
#include "session/login.h"

#include "env/identity.h"
#include "env/inifile.h"
#include "env/paths.h"
#include "env/serverslot.h"
#include "env/settings.h"
#include "server/twclient.h"
#include "session/initscreen.h"
#include "session/screensize.h"
#include "session/serverconnection.h"
#include "support/modalanswerer.h"
#include "support/quillettest.h"
#include "support/twserver/twserver.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFrame>
#include <QLineEdit>
#include <QPushButton>
#include <QTranslator>
#include <QtTest>

#include <memory>

namespace {

const QString cannotConnect =
    QStringLiteral("Cannot connect to Tidewell Server. Contact your system administrator.");
const QString tokenRefused = QStringLiteral(
    "Cannot connect to Tidewell Server with current user token. Contact your system administrator.");
const QString passwordRefused = QStringLiteral("The password you supplied is incorrect. Please, try again.");
const QString cannotEnable = QStringLiteral("Cannot enable user. Contact your system administrator.");

} // namespace

class LoginTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<TwServer> m_server;
    std::unique_ptr<ModalAnswerer> m_answers;
    std::unique_ptr<ServerConnection> m_connection;
    bool m_loggedIn = false;

    void configure(const QByteArray& port)
    {
        sandbox().writeSettings("[Server]\nTidewellServerPort=" + port +
                                "\nTidewellServerAddress=127.0.0.1\n");
    }

    void startSession()
    {
        m_connection = std::make_unique<ServerConnection>();
        m_loggedIn = session::logIn([this] { return m_connection->connectToServer(); });
        if (!m_loggedIn)
            m_connection->endSession();
    }

    void expectBox(const QString& text)
    {
        m_answers->expectBox(QStringLiteral("Server connection"), text, QMessageBox::Information);
    }

    // The user types `password`, after what is already there was cleared, and presses Ok.
    void expectPassword(const QString& password)
    {
        m_answers->expectDialog("InitScreen", [password](QWidget* dialog) {
            const auto field = dialog->findChild<QLineEdit*>(QStringLiteral("passwordLineEdit"));
            field->setText(password);
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
    }

    void expectCancel()
    {
        m_answers->expectDialog("InitScreen", [](QWidget* dialog) {
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
        });
    }

    // The log without its dates: "Info: message".
    QStringList logEntries()
    {
        QStringList entries;
        for (const QByteArray& line : sandbox().log().split('\n')) {
            if (!line.isEmpty())
                entries.append(QString::fromUtf8(line).section(QStringLiteral(" - "), 1));
        }
        return entries;
    }

    void verifyGoesOn()
    {
        QVERIFY(m_loggedIn);
        QVERIFY(env::serverClient());
        QVERIFY(env::serverClient()->isConnected());
    }

    void verifyEnded()
    {
        QVERIFY(!m_loggedIn);
        QVERIFY(!env::serverClient());
    }

private slots:
    void init()
    {
        QuilletTest::init();
        env::setCredentialsPassword(QString());
        m_answers = std::make_unique<ModalAnswerer>();
        m_server = std::make_unique<TwServer>();
        m_server->data.users.insert(QStringLiteral("clerk"),
                                    {QStringLiteral("tide"), QStringLiteral("the token")});
        QVERIFY(m_server->start());
        configure(QByteArray::number(m_server->port()));
    }

    void cleanup()
    {
        const QStringList problems = m_answers->problems();
        m_answers.reset();
        m_server.reset(); // first, so that no farewell waits for a silent server
        m_connection.reset();
        QuilletTest::cleanup();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    }

    // --- Without a server

    void aPortBelowOneMeansNoServer_data()
    {
        QTest::addColumn<QByteArray>("port");
        QTest::newRow("0") << QByteArray("0");
        QTest::newRow("-5") << QByteArray("-5");
        QTest::newRow("abc") << QByteArray("abc");
        QTest::newRow("empty") << QByteArray("");
    }
    void aPortBelowOneMeansNoServer()
    {
        QFETCH(QByteArray, port);
        configure(port);
        sandbox().writeToken("[General]\nUserToken=the token\n");
        startSession();
        QVERIFY(m_loggedIn);
        QVERIFY(!env::serverClient());
        QVERIFY(m_server->nobodyConnected());
        QCOMPARE(logEntries(), QStringList("Info: Starting session with user 'clerk'"));
        QCOMPARE(debugOutput().last(), QStringLiteral("Settings file: %1").arg(env::settingsPath()));
    }

    void aMissingSettingsFileMeansNoServer()
    {
        QVERIFY(QFile::remove(env::settingsPath()));
        startSession();
        QVERIFY(m_loggedIn);
        QVERIFY(!env::serverClient());
    }

    // --- Who the user is

    void theUserIsUSERNAMEAndBecomesTheCachedName()
    {
        configure("0");
        sandbox().setVariable("USER", "somebody else");
        sandbox().setVariable("USERNAME", "señora");
        sandbox().writeCredentials("from the file\n");
        env::setCredentialsUserName(QString());
        startSession();
        QCOMPARE(logEntries(), QStringList(QString::fromUtf8("Info: Starting session with user 'señora'")));
        QCOMPARE(env::credentialsUserName(), QString::fromUtf8("señora"));
    }

    void theWindowManagerBehaviourIsRead()
    {
        sandbox().writeSettings("[Desktop]\nWindowManagerBehaviour=standard\n");
        startSession();
        QVERIFY(env::standardWindowManager());
        sandbox().writeSettings("[Desktop]\nWindowManagerBehaviour=other one\n");
        startSession();
        QVERIFY(!env::standardWindowManager());
    }

    // --- The first start

    void thePasswordIsAskedForAndTheTokenKept()
    {
        expectPassword(QStringLiteral("tide"));
        startSession();
        verifyGoesOn();
        QCOMPARE(m_server->requests(),
                 QList<QByteArray>({"login?clerk&&tide\n", "activate_user?clerk", "start_session"}));
        QCOMPARE(Sandbox::readFile(env::tokenPath()), QByteArray("[General]\nUserToken=the token\n"));
        QCOMPARE(env::credentialsPassword(), QStringLiteral("tide"));
        QCOMPARE(logEntries(),
                 QStringList({"Info: Starting session with user 'clerk'", "Info: Session started"}));
    }

    void theDebugOutputTellsTheStepsInOrder()
    {
        expectPassword(QStringLiteral("tide"));
        startSession();
        const QStringList lines = debugOutput();
        QCOMPARE(lines.size(), 5);
        QVERIFY(lines[0].endsWith(QLatin1String("Info: Starting session with user 'clerk'")));
        QCOMPARE(lines[1], QStringLiteral("Settings file: %1").arg(env::settingsPath()));
        QCOMPARE(lines[2], QStringLiteral("Looking for token on file: %1").arg(env::tokenPath()));
        QCOMPARE(lines[3], QStringLiteral("Connected"));
        QVERIFY(lines[4].endsWith(QLatin1String("Info: Session started")));
    }

    void theNextStartLogsInWithTheToken()
    {
        expectPassword(QStringLiteral("tide"));
        startSession();
        startSession();
        verifyGoesOn();
        QCOMPARE(m_server->requests().mid(4),
                 QList<QByteArray>({"login?clerk&&the token\n", "start_session"}));
    }

    void aRefusedPasswordIsAskedForAgainWithoutLimit()
    {
        for (int i = 0; i < 5; ++i) {
            expectPassword(QStringLiteral("wrong %1").arg(i));
            expectBox(passwordRefused);
        }
        // The text that was refused still stands in the field.
        QString left;
        m_answers->expectDialog("InitScreen", [&left](QWidget* dialog) {
            const auto field = dialog->findChild<QLineEdit*>(QStringLiteral("passwordLineEdit"));
            left = field->text();
            field->setText(QStringLiteral("tide"));
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        startSession();
        verifyGoesOn();
        QCOMPARE(left, QStringLiteral("wrong 4"));
        QCOMPARE(env::credentialsPassword(), QStringLiteral("tide"));
        QCOMPARE(m_server->requests().size(), 5 + 3);
    }

    void theDialogCoversTheDesktopWithItsPanelInTheMiddleEveryTime()
    {
        const QSize desktop = session::desktopSize();
        int rounds = 0;
        const auto look = [&](QWidget* dialog) {
            ++rounds;
            QCOMPARE(dialog->minimumSize(), desktop);
            QCOMPARE(dialog->maximumSize(), desktop);
            QCOMPARE(dialog->size(), desktop);
            QVERIFY(dialog->windowState() & Qt::WindowFullScreen);
            QVERIFY(dialog->isModal());
            QVERIFY(!dialog->parentWidget());
            const auto panel = dialog->findChild<QFrame*>(QStringLiteral("formFrame"));
            const QSize size = panel->size();
            QCOMPARE(panel->pos(),
                     QPoint((desktop.width() - size.width()) / 2, (desktop.height() - size.height()) / 2));
            panel->move(0, 0); // the next round puts it back
        };
        m_answers->expectDialog("InitScreen", [&](QWidget* dialog) {
            look(dialog);
            dialog->findChild<QLineEdit*>()->setText(QStringLiteral("wrong"));
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        });
        expectBox(passwordRefused);
        m_answers->expectDialog("InitScreen", [&](QWidget* dialog) {
            look(dialog);
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
        });
        startSession();
        QCOMPARE(rounds, 2);
    }

    void cancelEndsTheSessionWithoutAWord()
    {
        expectCancel();
        startSession();
        verifyEnded();
        QCOMPARE(m_server->requests(), QList<QByteArray>({"end_session", "quit\n"}));
        QCOMPARE(logEntries(),
                 QStringList({"Info: Starting session with user 'clerk'", "Info: Session ended"}));
        QVERIFY(!QFile::exists(env::tokenPath()));
    }

    void cancelAfterARefusedPasswordEndsTheSession()
    {
        expectPassword(QStringLiteral("wrong"));
        expectBox(passwordRefused);
        expectCancel();
        startSession();
        verifyEnded();
        QVERIFY(!QFile::exists(env::tokenPath()));
        QCOMPARE(env::credentialsPassword(), QStringLiteral("wrong")); // kept before it is tried
    }

    void aUserWhoCannotBeEnabledIsToldAndTheSessionEnds_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("Error:") << QByteArray("Error: locked");
        QTest::newRow("Error: alone") << QByteArray("Error:");
        QTest::newRow("blank") << QByteArray(" \n ");
    }
    void aUserWhoCannotBeEnabledIsToldAndTheSessionEnds()
    {
        QFETCH(QByteArray, reply);
        m_server->setFault("activate_user?", {TwFault::Instead, 0, reply});
        expectPassword(QStringLiteral("tide"));
        expectBox(cannotEnable);
        startSession();
        verifyEnded();
        QVERIFY(!QFile::exists(env::tokenPath()));
        QCOMPARE(m_server->requests(),
                 QList<QByteArray>({"login?clerk&&tide\n", "activate_user?clerk", "end_session", "quit\n"}));
    }

    void aTokenThatOnlyLooksLikeARefusalIsAToken_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("lower case") << QByteArray("error: x");
        QTest::newRow("without colon") << QByteArray("Error");
        QTest::newRow("in the middle") << QByteArray("x Error: y");
    }
    void aTokenThatOnlyLooksLikeARefusalIsAToken()
    {
        QFETCH(QByteArray, reply);
        m_server->setFault("activate_user?", {TwFault::Instead, 0, reply});
        expectPassword(QStringLiteral("tide"));
        startSession();
        verifyGoesOn();
        QCOMPARE(env::readValue(env::tokenPath(), QStringLiteral("UserToken")), QString::fromUtf8(reply));
    }

    void aServerThatHangsUpBetweenLoginAndActivationEnablesNobody_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<int>("fault");
        QTest::newRow("after the login's reply") << QByteArray("login?") << int(TwFault::HangUp);
        QTest::newRow("on activation") << QByteArray("activate_user?") << int(TwFault::Close);
    }
    void aServerThatHangsUpBetweenLoginAndActivationEnablesNobody()
    {
        QFETCH(QByteArray, command);
        QFETCH(int, fault);
        m_server->setFault(command, {static_cast<TwFault::Kind>(fault)});
        expectPassword(QStringLiteral("tide"));
        expectBox(cannotEnable);
        startSession();
        verifyEnded();
        QVERIFY(!QFile::exists(env::tokenPath()));
    }

    // Wanted: the shell reads what has come after the first wait. What is left of a reply in pieces is the
    // answer to the next question.
    void aLoginReplyInPiecesShiftsEveryAnswer()
    {
        m_server->setFault("login?", {TwFault::Split, 100, QByteArray()}); // "O" and "K"
        m_server->setFault("activate_user?", {TwFault::Late, 2000});
        expectPassword(QStringLiteral("tide"));
        startSession();
        verifyGoesOn();
        QCOMPARE(env::readValue(env::tokenPath(), QStringLiteral("UserToken")), QStringLiteral("K"));
    }

    void everyTextIsTranslated()
    {
        QTranslator spanish;
        QVERIFY(spanish.load(QStringLiteral(TRANSLATION)));
        QCoreApplication::installTranslator(&spanish);
        const auto expect = [&](const char* text) {
            m_answers->expectBox(QString::fromUtf8("Conexión con el servidor"), QString::fromUtf8(text),
                                 QMessageBox::Information);
        };
        m_server->setFault("activate_user?", {TwFault::Refused});
        expectPassword(QStringLiteral("wrong"));
        expect("Contraseña incorrecta");
        expectPassword(QStringLiteral("tide"));
        expect("Usuario no activado");
        startSession();
        sandbox().writeToken("[General]\nUserToken=stale\n");
        expect("Token rechazado");
        startSession();
        m_server->stop();
        expect("Sin servidor");
        startSession();
        QCoreApplication::removeTranslator(&spanish);
    }

    // --- The token

    void tokensSurviveTheFile_data()
    {
        QTest::addColumn<QString>("token");
        QTest::newRow("comma") << "a,b,c";
        QTest::newRow("semicolon") << "a;b";
        QTest::newRow("quotes") << "\"a\" 'b'";
        QTest::newRow("percent") << "100%41%USERNAME%";
        QTest::newRow("backslash") << "\\a\\x41\\\\";
        QTest::newRow("letters") << QString::fromUtf8("señal ß 漢字 😀");
        QTest::newRow("everything") << QString::fromUtf8("@a=b;[c] #\"d\"\te\\,%ñ");
        QTest::newRow("long") << QString(3000, QLatin1Char('t'));
    }
    void tokensSurviveTheFile()
    {
        QFETCH(QString, token);
        m_server->setFault("activate_user?", {TwFault::Instead, 0, token.toUtf8()});
        expectPassword(QStringLiteral("tide"));
        startSession();
        verifyGoesOn();
        // Written anew, so that it is the file that is read and not what Qt remembers of it.
        sandbox().writeToken(Sandbox::readFile(env::tokenPath()));
        m_server->setFault("login?", {TwFault::Instead, 0, "OK"});
        startSession();
        QVERIFY(m_server->requests().contains("login?clerk&&" + token.toUtf8() + "\n"));
        QCOMPARE(m_server->requests().count("activate_user?clerk"), 1);
    }

    void blanksAroundATokenInAFileWrittenByHandAreTheIniFormsOwn_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("token");
        QTest::newRow("bare blanks are not part of it")
            << QByteArray("UserToken=  abc  ") << QByteArray("abc");
        QTest::newRow("quoted blanks are") << QByteArray("UserToken=\"  abc  \"") << QByteArray("  abc  ");
        QTest::newRow("without a group") << QByteArray("UserToken=abc") << QByteArray("abc");
    }
    void blanksAroundATokenInAFileWrittenByHandAreTheIniFormsOwn()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, token);
        sandbox().writeToken(line + "\n");
        m_server->setFault("login?", {TwFault::Instead, 0, "OK"});
        startSession();
        QCOMPARE(m_server->requests().value(0), "login?clerk&&" + token + "\n");
    }

    void aRefusedTokenEndsTheSessionWithoutTheDialog()
    {
        sandbox().writeToken("[General]\nUserToken=stale\n");
        expectBox(tokenRefused);
        startSession();
        verifyEnded();
        QCOMPARE(m_server->requests(), QList<QByteArray>({"login?clerk&&stale\n", "end_session", "quit\n"}));
        QCOMPARE(Sandbox::readFile(env::tokenPath()), QByteArray("[General]\nUserToken=stale\n"));
    }

    void aTokenFileWithoutATokenLeadsToTheDialog_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty file") << QByteArray("");
        QTest::newRow("empty token") << QByteArray("[General]\nUserToken=\n");
        QTest::newRow("other group") << QByteArray("[Other]\nUserToken=abc\n");
        QTest::newRow("noise") << QByteArray("\xff\x00\x01=[]", 6);
    }
    void aTokenFileWithoutATokenLeadsToTheDialog()
    {
        QFETCH(QByteArray, content);
        sandbox().writeToken(content);
        expectPassword(QStringLiteral("tide"));
        startSession();
        verifyGoesOn();
        QCOMPARE(env::readValue(env::tokenPath(), QStringLiteral("UserToken")), QStringLiteral("the token"));
    }

    void aFolderInTheTokenFilesPlaceLetsTheSessionGoOn()
    {
        QDir().mkpath(env::tokenPath());
        expectPassword(QStringLiteral("tide"));
        startSession();
        verifyGoesOn();
        QVERIFY(QFileInfo(env::tokenPath()).isDir());
    }

    // --- The server

    void aServerThatIsNotThereEndsTheSession()
    {
        m_server->stop();
        expectBox(cannotConnect);
        startSession();
        verifyEnded();
        QCOMPARE(logEntries(), QStringList({"Info: Starting session with user 'clerk'",
                                            "Error: Cannot connect to twserver"}));
    }

    void theTokenIsLookedForBeforeTheConnection()
    {
        m_server->stop();
        expectBox(cannotConnect);
        startSession();
        const QStringList lines = debugOutput();
        QVERIFY(lines.indexOf(QStringLiteral("Looking for token on file: %1").arg(env::tokenPath())) <
                lines.indexOf(QStringLiteral("Cannot connect")));
    }

    void aRefusalOfStartSessionIsOnlyLogged()
    {
        sandbox().writeToken("[General]\nUserToken=the token\n");
        m_server->setFault("start_session", {TwFault::Refused, 0, "too many"});
        startSession();
        verifyGoesOn();
        QCOMPARE(logEntries().last(), QStringLiteral("Info: Error: too many"));
    }

    void connectToServerPublishesTheClientOrNone()
    {
        configure("0");
        startSession();
        QVERIFY(!m_connection->connectToServer());
        QVERIFY(!env::serverClient());
        QCOMPARE(logEntries().last(), QStringLiteral("Error: Cannot connect to twserver"));
        configure(QByteArray::number(m_server->port()));
        QVERIFY(m_connection->connectToServer());
        QVERIFY(env::serverClient());
        QVERIFY(env::serverClient()->isConnected());
    }

    void connectingAgainTakesLeaveOfTheFirstConnection()
    {
        configure("0");
        startSession();
        configure(QByteArray::number(m_server->port()));
        QVERIFY(m_connection->connectToServer());
        QVERIFY(m_connection->connectToServer());
        QCOMPARE(m_server->requests(), QList<QByteArray>({"quit\n"}));
        QCOMPARE(env::serverClient(), m_connection->client());
        QVERIFY(env::serverClient()->isConnected());
    }

    // --- The end

    void theServerIsToldOfTheEndThenTheClientGoes()
    {
        sandbox().writeToken("[General]\nUserToken=the token\n");
        startSession();
        m_connection->endSession();
        QVERIFY(!m_connection->client());
        QVERIFY(!env::serverClient());
        QCOMPARE(m_server->requests().mid(2), QList<QByteArray>({"end_session", "quit\n"}));
        QCOMPARE(logEntries().value(2), QStringLiteral("Info: Session ended"));
        m_connection->endSession(); // nothing is left to end
        QCOMPARE(logEntries().size(), 3);
    }

    void aServerThatIsGoneDoesNotKeepTheSessionFromEnding()
    {
        sandbox().writeToken("[General]\nUserToken=the token\n");
        startSession();
        m_server->stop();
        m_connection->endSession();
        QVERIFY(!env::serverClient());
        QCOMPARE(logEntries().last(), QStringLiteral("Info: "));
    }
};

QTEST_MAIN(LoginTest)
#include "tst_login.moc"
