#include "support/shelltest.h"

#include "instances/appinstance.h"
#include "shell/threadbutton.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QDir>
#include <QTimer>
#include <QtTest>

// --- The shell

void ShellTest::startShell()
{
    startShellWithTracker();
    m_shell->stopTracker();
    clearDebugOutput();
}

void ShellTest::startShellWithTracker()
{
    m_shell = std::make_unique<RunningShell>();
}

void ShellTest::addProbe(const QByteArray& more)
{
    sandbox().setVariable("PROBE_REPORT", reportPath().toUtf8());
    sandbox().writeUserApplications("[probe]\nname=The probe\nos=windows\ncommand=" PROBE "\n" + more);
}

QString ShellTest::reportPath()
{
    return sandbox().scratch() + QStringLiteral("/report");
}

std::unique_ptr<AppInstance> ShellTest::instance(const QString& id)
{
    return std::make_unique<AppInstance>(id, nullptr);
}

void ShellTest::startServer()
{
    m_server = std::make_unique<TwServer>();
    m_server->data.users.insert(QStringLiteral("clerk"),
                                {QStringLiteral("tide"), QStringLiteral("the token")});
    QVERIFY(m_server->start());
    sandbox().writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                            QByteArray::number(m_server->port()) + '\n');
    sandbox().writeToken("[General]\nUserToken=the token\n");
    addToServer(QStringLiteral("letters"), QStringLiteral("letters.exe"), QStringLiteral("127.0.0.1"),
                QStringLiteral("windows"));
}

void ShellTest::startShellWithRemoteApplication()
{
    startServer();
    addToServer(QStringLiteral("word"), QStringLiteral("C:\\word.exe"), QStringLiteral("192.0.2.1"),
                QStringLiteral("linux"));
    const QString bin = sandbox().scratch() + QStringLiteral("/bin");
    QDir().mkpath(bin);
    QVERIFY(QFile::copy(QStringLiteral(PROBE), bin + QStringLiteral("/xfreerdp")));
    sandbox().setVariable("PATH", bin.toUtf8());
    sandbox().setVariable("PROBE_REPORT", reportPath().toUtf8());
    startShell();
}

void ShellTest::addToServer(const QString& id, const QString& program, const QString& address,
                            const QString& system)
{
    TwData::Application application;
    application.name = application.displayName = id;
    application.execPath = program;
    application.arguments = QStringLiteral("-a");
    application.server = QStringLiteral("host");
    m_server->data.applications.insert(id, application);
    m_server->data.servers.insert(QStringLiteral("host"), {address, system});
    m_server->data.valid = QStringList(id);
}

// --- Windows

qlonglong ShellTest::openWindow(const QString& title, DWORD style, DWORD extendedStyle)
{
    const HWND window = CreateWindowExW(extendedStyle, L"TEST", reinterpret_cast<LPCWSTR>(title.utf16()),
                                        style, 0, 0, 200, 100, nullptr, nullptr, nullptr, nullptr);
    SetWindowLongW(window, GWL_STYLE, static_cast<LONG>(style));
    return static_cast<qlonglong>(reinterpret_cast<LONG_PTR>(window));
}

HWND ShellTest::handle(qlonglong window)
{
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(window));
}

void ShellTest::closeWindow(qlonglong window)
{
    DestroyWindow(handle(window));
}

qlonglong ShellTest::attach(const QString& title)
{
    const qlonglong window = openWindow(title);
    desktop().mapWindow(window);
    return window;
}

bool ShellTest::isWaiting()
{
    return QApplication::desktop()->cursor().shape() == Qt::WaitCursor;
}

// --- What was done

QStringList ShellTest::calls(const QList<QByteArray>& functions)
{
    QStringList list;
    for (const simwin::Call& call : simwin::calls()) {
        if (functions.contains(call.function))
            list.append(QString::fromLatin1(call.function) + QLatin1Char('(') +
                        call.arguments.join(QStringLiteral(", ")) + QLatin1Char(')'));
    }
    return list;
}

QStringList ShellTest::windowCalls()
{
    return calls({"ShowWindow", "BringWindowToTop", "PostMessageW", "SystemParametersInfoW"});
}

QStringList ShellTest::exitCallsMade()
{
    QStringList list = calls({"FindWindowW", "SHAppBarMessage", "ExitWindowsEx", "WTSDisconnectSession"});
    return list.mid(list.size() - 3);
}

QStringList ShellTest::exitCalls()
{
    return {"FindWindowW(System_TrayWnd, )", "SHAppBarMessage(10, 48, 0, 2)", "ExitWindowsEx(0, ffffffff)"};
}

QStringList ShellTest::log()
{
    QStringList messages;
    for (const QByteArray& line : sandbox().log().split('\n')) {
        if (!line.isEmpty())
            messages.append(QString::fromLocal8Bit(line).section(QStringLiteral(" - "), 1));
    }
    return messages;
}

void ShellTest::expectSuspendQuestion(QMessageBox::StandardButton answer)
{
    m_answers->expectBox(QStringLiteral("Suspend session"),
                         QStringLiteral("There are currently running applications. Do you want to suspend "
                                        "session keeping them running?"),
                         QMessageBox::Question, QMessageBox::Yes | QMessageBox::No, answer);
}

// --- Around each test

void ShellTest::initTestCase()
{
    qRegisterMetaType<AppInstance*>();
    qRegisterMetaType<ThreadButton*>();
    qRegisterMetaType<QProcess::ExitStatus>();
}

void ShellTest::init()
{
    QuilletTest::init();
    m_answers = std::make_unique<ModalAnswerer>();
}

void ShellTest::cleanup()
{
    const QStringList problems = m_answers->problems();
    m_answers.reset();
    if (m_shell && m_shell->desktop().currentProcess())
        m_shell->desktop().currentProcess()->waitForFinished();
    m_shell.reset();
    m_server.reset();
    QApplication::desktop()->setCursor(Qt::ArrowCursor);
    QuilletTest::cleanup();
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
}
