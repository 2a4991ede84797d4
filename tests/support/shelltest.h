#pragma once

#include "session/desktop.h"
#include "shell/tabbar.h"
#include "simwin.h"
#include "support/modalanswerer.h"
#include "support/quillettest.h"
#include "support/runningshell.h"
#include "support/twserver/twserver.h"

#include <memory>

class AppInstance;

// What tests of the running shell on the simulated Windows derive from: each test function starts a shell of
// its own and says what happens in its session. What the shell starts must have ended by then.
class ShellTest : public QuilletTest
{
    Q_OBJECT

protected:
    // With a tracker that has ended, so that a test tells of windows itself, or with one that runs.
    void startShell();
    void startShellWithTracker();

    RunningShell& shell() { return *m_shell; }
    Desktop& desktop() { return m_shell->desktop(); }
    TabBar& bar() { return *m_shell->bar(); }
    int current() { return bar().currentIndex(); }

    // An application "probe" of the user's file, with `more` lines: a program that writes what it was given
    // to reportPath() and ends.
    void addProbe(const QByteArray& more = QByteArray());
    QString reportPath();
    static std::unique_ptr<AppInstance> instance(const QString& id = QStringLiteral("probe"));

    // A server that knows the user's token and one valid application. Before the shell starts.
    void startServer();
    // The server's one valid application. (Every answer has some text, because the shell waits for one.)
    void addToServer(const QString& id, const QString& program, const QString& address,
                     const QString& system);
    TwServer& server() { return *m_server; }
    // With a server whose application "word" is on a remote host; the client for it is the probe.
    void startShellWithRemoteApplication();

    // A window of some other program; a style that Windows would add to stays as it is.
    static qlonglong openWindow(const QString& title, DWORD style = WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                DWORD extendedStyle = 0);
    static HWND handle(qlonglong window);
    static void closeWindow(qlonglong window);
    // Opens one that the controller is told of.
    qlonglong attach(const QString& title);

    // Whether the desktop shows the wait cursor.
    static bool isWaiting();
    QList<QTimer*> launchTimers() { return desktop().findChildren<QTimer*>(); }

    // "function(argument, argument)" for each call of these functions.
    static QStringList calls(const QList<QByteArray>& functions);
    // What was done to windows.
    static QStringList windowCalls();
    // The last calls of an end of session, and what they have to be.
    static QStringList exitCallsMade();
    static QStringList exitCalls();
    static QString hex(qlonglong value) { return QString::number(value, 16); }

    // The log without its dates: "Info: message".
    QStringList log();

    ModalAnswerer& answers() { return *m_answers; }
    void expectSuspendQuestion(QMessageBox::StandardButton answer);

protected slots:
    void initTestCase();
    void init();
    void cleanup();

private:
    std::unique_ptr<ModalAnswerer> m_answers;
    std::unique_ptr<TwServer> m_server;
    std::unique_ptr<RunningShell> m_shell;
};
