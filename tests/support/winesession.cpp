#include "support/winesession.h"

#include <QDir>
#include <QElapsedTimer>
#include <QThread>

namespace {

QString root()
{
    return QStringLiteral(SOURCE_FOLDER);
}

} // namespace

WineSession::WineSession(const QString& story, int width, int height)
    : m_story(story)
    , m_environment(QProcessEnvironment::systemEnvironment())
{
    // The session's own command tells what its environment is, and stays until its input ends.
    const QString command = QStringLiteral("printf '%s\\n' \"$DISPLAY\" \"$WINEPREFIX\" \"$WINE_HOME\" "
                                           "\"$WINEDLLOVERRIDES\" ready; exec cat >/dev/null");
    const QString size = QStringLiteral("%1x%2").arg(width).arg(height);
    m_session.start(root() + QStringLiteral("/tools/wine-session"), {"--size", size, "sh", "-c", command});
    QByteArray output;
    while (!output.endsWith("ready\n") && m_session.waitForReadyRead(120000))
        output += m_session.readAllStandardOutput();
    const QList<QByteArray> lines = output.split('\n');
    if (lines.size() < 5)
        return;
    const char* const names[] = {"DISPLAY", "WINEPREFIX", "WINE_HOME", "WINEDLLOVERRIDES"};
    for (int i = 0; i < 4; ++i)
        m_environment.insert(QString::fromLatin1(names[i]), QString::fromLocal8Bit(lines[i]));
    m_environment.insert(QStringLiteral("WINEDEBUG"), QStringLiteral("-all"));
    m_environment.remove(QStringLiteral("QT_QPA_PLATFORM")); // the native tests'
}

WineSession::~WineSession()
{
    m_session.closeWriteChannel();
    if (!m_session.waitForFinished(60000)) {
        m_session.terminate();
        m_session.waitForFinished(60000);
    }
}

bool WineSession::isRunning() const
{
    return m_environment.contains(QStringLiteral("WINE_HOME")) && m_session.state() == QProcess::Running;
}

QString WineSession::error() const
{
    return m_session.errorString();
}

QString WineSession::dist()
{
    return root() + QStringLiteral("/build/windows/dist");
}

QString WineSession::tools()
{
    return root() + QStringLiteral("/build/windows/tests");
}

QString WineSession::home() const
{
    return m_environment.value(QStringLiteral("WINE_HOME"));
}

QString WineSession::driveC() const
{
    return m_environment.value(QStringLiteral("WINEPREFIX")) + QStringLiteral("/drive_c");
}

void WineSession::start(QProcess& process, const QString& program, const QStringList& arguments,
                        const QString& folder, const QStringList& variables)
{
    QProcessEnvironment environment = m_environment;
    for (const QString& variable : variables) {
        QString name = variable.section(QLatin1Char('='), 0, 0);
        if (name.startsWith(QLatin1String("QT_"))) // Wine passes these on only under this name
            name.prepend(QLatin1String("WINE"));
        environment.insert(name, variable.section(QLatin1Char('='), 1));
    }
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder);
    process.start(QStringLiteral("wine"), QStringList(program) + arguments);
}

void WineSession::startShell(QProcess& process, const QStringList& arguments, const QStringList& variables)
{
    start(process, tools() + QStringLiteral("/asuser.exe"), QStringList("quillet.exe") + arguments, dist(),
          variables);
}

void WineSession::startShellAsAdministrator(QProcess& process)
{
    start(process, QStringLiteral("quillet.exe"));
}

void WineSession::killShell(QProcess& process)
{
    QProcess killer;
    start(killer, QStringLiteral("taskkill"), {"/f", "/im", "quillet.exe"});
    killer.waitForFinished(60000);
    process.waitForFinished(60000);
}

QStringList WineSession::windows()
{
    QProcess process;
    start(process, tools() + QStringLiteral("/listwindows.exe"));
    process.waitForFinished(60000);
    QString output = QString::fromUtf8(process.readAllStandardOutput());
    output.remove(QLatin1Char('\r'));
    QStringList lines = output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (lines.isEmpty() || lines.takeLast() != QLatin1String("end"))
        return {"failed"};
    return lines;
}

bool WineSession::waitForWindow(const QString& program, const QString& title, QStringList* last)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 60000) {
        const QStringList found = windows();
        if (last)
            *last = found;
        const QStringList front = found.value(0).split(QLatin1Char('\t'));
        if (front.value(0) == program && front.value(2) == title)
            return true;
        QThread::msleep(100);
    }
    return false;
}

void WineSession::type(const QString& text)
{
    keyboard({"type", "--delay", "20", text});
}

void WineSession::press(const QString& key)
{
    keyboard({"key", key});
}

void WineSession::keyboard(const QStringList& arguments)
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(QStringLiteral("xdotool"), arguments);
    process.waitForFinished(60000);
}

QImage WineSession::screenshot(const QString& name)
{
    const QString folder = root() + QStringLiteral("/build/e2e");
    QDir().mkpath(folder);
    const QString file = QStringLiteral("%1/%2-%3.png").arg(folder, m_story, name);
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(QStringLiteral("import"), {"-window", "root", file});
    process.waitForFinished(60000);
    return QImage(file);
}
