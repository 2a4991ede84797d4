// The shipped program on Windows, and how its user gets in. The server is the stand-in, the keyboard is real.
#include "support/logreader.h"
#include "support/sandbox.h"
#include "support/twserver/twserver.h"
#include "support/winesession.h"

#include <QDir>
#include <QtTest>

namespace {

const QString shellProgram = QStringLiteral("quillet.exe");
const QString dialogTitle = QStringLiteral("Dialog");
const QString boxTitle = QStringLiteral("Server connection");

// A server that lets everybody in with the password "tide", and gives the token "a,b;c".
class Server : public TwServer
{
public:
    Server() { data.users.insert(QStringLiteral("*"), {QStringLiteral("tide"), QStringLiteral("a,b;c")}); }
};

} // namespace

class LoginStory : public QObject
{
    Q_OBJECT

    static void configure(const WineSession& session, int port)
    {
        const QString folder = session.driveC() + QStringLiteral("/Program Files/Tidewell Desktop");
        QVERIFY(QDir().mkpath(folder));
        Sandbox::writeFile(folder + QStringLiteral("/quillet.ini"),
                           "[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                               QByteArray::number(port) + "\n");
    }

    // The log's entries without their dates.
    static QStringList log(const WineSession& session)
    {
        QStringList entries;
        for (const LogEntry& entry : LogReader(session.home() + QStringLiteral("/.quillet.log")).next())
            entries.append(entry.level + QLatin1String(": ") + entry.message);
        return entries;
    }

    static void verifyLoggedOff(QProcess& shell)
    {
        QVERIFY(shell.waitForFinished(60000));
        QCOMPARE(shell.exitCode(), 99); // a log-off ended it, not the shell itself
    }

    // The dialog fills the screen, its white panel is in the middle. (Pictures are taken once that is
    // painted, between its title and its fields.)
    static void verifyDialog(const QImage& screen)
    {
        QVERIFY(!screen.isNull());
        const QColor grey("#e6eaed");
        const int right = screen.width() - 1;
        const int bottom = screen.height() - 1;
        for (const QPoint& corner :
             {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)})
            QCOMPARE(screen.pixelColor(corner), grey);
        const auto firstOther = [&](QPoint at, const QPoint& step) {
            int distance = 0;
            for (; screen.rect().contains(at) && screen.pixelColor(at) == grey; at += step)
                ++distance;
            return distance;
        };
        const QPoint centre = screen.rect().center();
        const int left = firstOther({0, centre.y()}, {1, 0});
        const int top = firstOther({centre.x(), 0}, {0, 1});
        QVERIFY(left > 0 && left < centre.x() && top > 0 && top < centre.y());
        QVERIFY(qAbs(firstOther({right, centre.y()}, {-1, 0}) - left) <= 1);
        QVERIFY(qAbs(firstOther({centre.x(), bottom}, {0, -1}) - top) <= 1);
        QCOMPARE(screen.pixelColor(left + 8, top + 8), QColor(Qt::white));
    }

    static QString tokenFile(const WineSession& session)
    {
        return session.home() + QStringLiteral("/.tidewell.ini");
    }

private slots:
    // A nurse logs in for the first time, with a slip of the fingers. The next morning the shell knows her.
    void theFirstStartAsksForThePasswordAndTheSecondDoesNot()
    {
        Server server;
        QVERIFY(server.start());
        WineSession session(QStringLiteral("login"));
        QVERIFY2(session.isRunning(), qPrintable(session.error()));
        configure(session, server.port());
        QStringList windows;
        {
            QProcess shell;
            session.startShell(shell);
            QVERIFY2(session.waitForWindow(shellProgram, dialogTitle, &windows),
                     qPrintable(windows.join('\n')));
            verifyDialog(session.screenshotWith(QStringLiteral("dialog"), 640, 390, Qt::white));
            session.type(QStringLiteral("tied"));
            session.press(QStringLiteral("Return"));
            QVERIFY2(session.waitForWindow(shellProgram, boxTitle, &windows), qPrintable(windows.join('\n')));
            session.screenshot(QStringLiteral("wrong-password"));
            session.press(QStringLiteral("Return"));
            QVERIFY2(session.waitForWindow(shellProgram, dialogTitle, &windows),
                     qPrintable(windows.join('\n')));
            session.screenshot(QStringLiteral("again"));
            session.type(QStringLiteral("tide")); // replaces the wrong one
            session.press(QStringLiteral("Return"));
            QVERIFY(server.waitFor(TwEvent::Reply, "Session started", 60000));
            QTRY_VERIFY_WITH_TIMEOUT(server.requests().size() >= 5, 60000); // what it may start, as the last
            QVERIFY(!shell.waitForFinished(1000)); // in the session; what the pages show comes behind
            session.screenshot(QStringLiteral("session"));
            session.killShell(shell);
        }
        const QByteArray name = server.requests().value(0).mid(6).split('&').value(0);
        const int firstDays = server.requests().size();
        QCOMPARE(server.requests().mid(0, 5),
                 QList<QByteArray>({"login?" + name + "&&tied\n", "login?" + name + "&&tide\n",
                                    "activate_user?" + name, "start_session", "get_valid_applications"}));
        QCOMPARE(Sandbox::readFile(tokenFile(session)), QByteArray("[General]\r\nUserToken=\"a,b;c\"\r\n"));
        const QStringList firstDay = {
            QStringLiteral("Info: Calling manager"),
            QStringLiteral("Info: Starting session with user '%1'").arg(QString(name)),
            QStringLiteral("Info: Session started"), QStringLiteral("Info: Valid applications: ")};
        QCOMPARE(log(session), firstDay);

        QProcess shell;
        session.startShell(shell);
        QTRY_VERIFY_WITH_TIMEOUT(server.requests().size() >= firstDays + 3, 60000);
        QCOMPARE(
            server.requests().mid(firstDays, 3),
            QList<QByteArray>({"login?" + name + "&&a,b;c\n", "start_session", "get_valid_applications"}));
        QTRY_COMPARE_WITH_TIMEOUT(log(session), firstDay + firstDay, 60000);
        for (const QString& window : session.windows())
            QVERIFY2(!window.endsWith(dialogTitle), qPrintable(window));
        session.killShell(shell);
    }

    // The product as it comes: the translation is beside it.
    void theProductSpeaksSpanish()
    {
        Server server;
        QVERIFY(server.start());
        WineSession session(QStringLiteral("spanish"));
        QVERIFY2(session.isRunning(), qPrintable(session.error()));
        session.speakSpanish();
        configure(session, server.port());
        QProcess shell;
        session.startShell(shell);
        QStringList windows;
        QVERIFY2(session.waitForWindow(shellProgram, QString::fromUtf8("Diálogo"), &windows),
                 qPrintable(windows.join('\n')));
        verifyDialog(session.screenshotWith(QStringLiteral("dialog"), 640, 390, Qt::white));
        session.press(QStringLiteral("Return")); // with nothing typed
        QVERIFY2(session.waitForWindow(shellProgram, QString::fromUtf8("Contraseña vacía"), &windows),
                 qPrintable(windows.join('\n')));
        QVERIFY(!session.screenshot(QStringLiteral("empty")).isNull());
        session.killShell(shell);
    }

    // The token was revoked: a message, and the Windows session ends.
    void aRefusedTokenEndsTheWindowsSession()
    {
        Server server;
        QVERIFY(server.start());
        WineSession session(QStringLiteral("stale-token"));
        QVERIFY2(session.isRunning(), qPrintable(session.error()));
        configure(session, server.port());
        Sandbox::writeFile(tokenFile(session), "[General]\nUserToken=stale\n");
        QProcess shell;
        session.startShell(shell);
        QStringList windows;
        QVERIFY2(session.waitForWindow(shellProgram, boxTitle, &windows), qPrintable(windows.join('\n')));
        session.screenshot(QStringLiteral("refused"));
        session.press(QStringLiteral("Return"));
        verifyLoggedOff(shell);
        QVERIFY(server.requests().value(0).endsWith("&&stale\n"));
        QCOMPARE(server.requests().mid(1), QList<QByteArray>({"end_session", "quit\n"}));
        QCOMPARE(Sandbox::readFile(tokenFile(session)), QByteArray("[General]\nUserToken=stale\n"));
    }

    void aServerThatIsNotThereEndsTheWindowsSession()
    {
        Server server;
        QVERIFY(server.start());
        const int port = server.port();
        server.stop();
        WineSession session(QStringLiteral("no-server"));
        QVERIFY2(session.isRunning(), qPrintable(session.error()));
        configure(session, port);
        QProcess shell;
        session.startShell(shell);
        QStringList windows;
        QVERIFY2(session.waitForWindow(shellProgram, boxTitle, &windows), qPrintable(windows.join('\n')));
        session.screenshot(QStringLiteral("message"));
        session.press(QStringLiteral("Return"));
        verifyLoggedOff(shell);
        QCOMPARE(log(session).last(), QStringLiteral("Error: Cannot connect to twserver"));
        QVERIFY(!QFile::exists(tokenFile(session)));
    }

    void escapeInTheDialogEndsTheWindowsSession()
    {
        Server server;
        QVERIFY(server.start());
        WineSession session(QStringLiteral("cancel"), 1024, 768);
        QVERIFY2(session.isRunning(), qPrintable(session.error()));
        configure(session, server.port());
        QProcess shell;
        session.startShell(shell);
        QStringList windows;
        QVERIFY2(session.waitForWindow(shellProgram, dialogTitle, &windows), qPrintable(windows.join('\n')));
        verifyDialog(session.screenshotWith(QStringLiteral("dialog"), 640, 390, Qt::white));
        session.press(QStringLiteral("Return")); // with nothing typed
        QVERIFY2(session.waitForWindow(shellProgram, QStringLiteral("Empty password"), &windows),
                 qPrintable(windows.join('\n')));
        session.screenshot(QStringLiteral("empty"));
        session.press(QStringLiteral("Return"));
        QVERIFY2(session.waitForWindow(shellProgram, dialogTitle, &windows), qPrintable(windows.join('\n')));
        session.press(QStringLiteral("Escape"));
        verifyLoggedOff(shell);
        QCOMPARE(server.requests(), QList<QByteArray>({"end_session", "quit\n"}));
        QCOMPARE(log(session).last(), QStringLiteral("Info: Session ended"));
        QVERIFY(!QFile::exists(tokenFile(session)));
    }
};

QTEST_GUILESS_MAIN(LoginStory)
#include "tst_login.moc"
