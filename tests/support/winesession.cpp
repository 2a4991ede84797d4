#include "support/winesession.h"

#include "support/screencursor.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <unistd.h>

namespace {

constexpr int patience = 60000;   // ms
constexpr QSize room(1920, 1200); // to which a screen may grow

QString text(const QSize& size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

QString root()
{
    return QStringLiteral(SOURCE_FOLDER);
}

} // namespace

WineSession::WineSession(const QString& story, int width, int height)
    : m_story(story)
    , m_screen(width, height)
    , m_environment(QProcessEnvironment::systemEnvironment())
{
    // The session's own command tells what its environment is, and stays until its input ends.
    const QString command = QStringLiteral("printf '%s\\n' \"$DISPLAY\" \"$WINEPREFIX\" \"$WINE_HOME\" "
                                           "\"$WINEDLLOVERRIDES\" \"$USER\" ready; exec cat >/dev/null");
    m_session.start(root() + QStringLiteral("/tools/wine-session"),
                    {"--size", text(m_screen), "--room", text(m_screen.expandedTo(room)), "--libraries",
                     tools() + QStringLiteral("/standins"), "--stacking",
                     tools() + QStringLiteral("/stacking.exe"), "sh", "-c", command});
    QByteArray output;
    while (!output.endsWith("ready\n") && m_session.waitForReadyRead(120000))
        output += m_session.readAllStandardOutput();
    const QList<QByteArray> lines = output.split('\n');
    if (lines.size() < 6)
        return;
    const char* const names[] = {"DISPLAY", "WINEPREFIX", "WINE_HOME", "WINEDLLOVERRIDES", "USER"};
    for (int i = 0; i < 5; ++i)
        m_environment.insert(QString::fromLatin1(names[i]), QString::fromLocal8Bit(lines[i]));
    m_environment.insert(QStringLiteral("WINEDEBUG"), QStringLiteral("-all"));
    m_environment.remove(QStringLiteral("QT_QPA_PLATFORM")); // the native tests'
}

WineSession::~WineSession()
{
    m_session.closeWriteChannel();
    if (!m_session.waitForFinished(patience)) {
        m_session.terminate();
        m_session.waitForFinished(patience);
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

QString WineSession::evidence()
{
    return root() + QStringLiteral("/build/e2e");
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

void WineSession::startAsUser(QProcess& process, const QString& program, const QStringList& arguments,
                              const QStringList& variables, const QString& folder)
{
    const QStringList records = {
        QStringLiteral("ASUSER_COMMANDS=") + windowsPath(record(QStringLiteral("commands"))),
        QStringLiteral("PASSWORD_CHANGES=") + windowsPath(record(QStringLiteral("password-changes"))),
        QStringLiteral("PASSWORD_RESULT=") + windowsPath(record(QStringLiteral("password-result"))),
        QStringLiteral("WTS_DISCONNECTIONS=") + windowsPath(record(QStringLiteral("disconnections")))};
    start(process, tools() + QStringLiteral("/asuser.exe"), QStringList(program) + arguments, folder,
          records + variables);
}

void WineSession::startShell(QProcess& process, const QStringList& arguments, const QStringList& variables)
{
    startAsUser(process, windowsPath(dist() + QStringLiteral("/quillet.exe")), arguments, variables,
                m_isSpanish ? dist() : home());
}

void WineSession::startShellAsAdministrator(QProcess& process)
{
    start(process, QStringLiteral("quillet.exe"));
}

void WineSession::killShell(QProcess& process)
{
    killProgram(QStringLiteral("quillet.exe"));
    process.waitForFinished(patience);
}

bool WineSession::killProgram(const QString& name)
{
    QProcess killer;
    start(killer, QStringLiteral("taskkill"), {"/f", "/im", name});
    return killer.waitForFinished(patience) && killer.exitCode() == 0;
}

int WineSession::run(const QString& helper, const QStringList& arguments, QString* output)
{
    QProcess process;
    start(process, QStringLiteral("%1/%2.exe").arg(tools(), helper), arguments);
    const bool finished = process.waitForFinished(patience);
    if (output)
        *output = QString::fromUtf8(process.readAllStandardOutput()).remove(QLatin1Char('\r'));
    return finished && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QStringList WineSession::readRecord(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString lines = QString::fromUtf8(file.readAll()).remove(QLatin1Char('\r'));
    return lines.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList WineSession::taskBarCommands() const
{
    return readRecord(record(QStringLiteral("commands")));
}

QStringList WineSession::disconnections() const
{
    return readRecord(record(QStringLiteral("disconnections")));
}

QStringList WineSession::passwordChanges() const
{
    return readRecord(record(QStringLiteral("password-changes")));
}

bool WineSession::setPasswordResult(quint32 result)
{
    QFile file(record(QStringLiteral("password-result")));
    return file.open(QIODevice::WriteOnly) && file.write(QByteArray::number(result)) > 0;
}

bool WineSession::playSessionEvent(const QString& event, int times)
{
    QElapsedTimer timer;
    timer.start();
    int code = 1;
    while ((code = run(QStringLiteral("pokesession"), {event, QString::number(times)})) == 1 &&
           timer.elapsed() < patience)
        QThread::msleep(100);
    return code == 0;
}

bool WineSession::resizeScreen(int width, int height)
{
    if (run(QStringLiteral("screensize"), {QString::number(width), QString::number(height)}) != 0)
        return false;
    m_screen = QSize(width, height);
    return true;
}

qint64 WineSession::processorTime() const
{
    const QByteArray ours = "WINEPREFIX=" + m_environment.value(QStringLiteral("WINEPREFIX")).toLocal8Bit();
    qint64 ticks = 0;
    for (const QString& process : QDir(QStringLiteral("/proc")).entryList({"[0-9]*"}, QDir::Dirs)) {
        const auto read = [&process](const char* name) {
            QFile file(QStringLiteral("/proc/%1/%2").arg(process, QLatin1String(name)));
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        if (!read("environ").split('\0').contains(ours))
            continue;
        const QByteArray stat = read("stat");
        const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' '); // from the state on
        ticks += fields.value(11).toLongLong() + fields.value(12).toLongLong();          // user, system
    }
    return ticks * 1000 / sysconf(_SC_CLK_TCK);
}

QList<WineWindow> WineSession::windowList()
{
    QString output;
    run(QStringLiteral("listwindows"), {}, &output);
    QStringList lines = output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (lines.isEmpty() || lines.takeLast() != QLatin1String("end"))
        return {};
    QList<WineWindow> list;
    for (const QString& line : lines) {
        const QStringList field = line.split(QLatin1Char('\t'));
        const QRect frame(field.value(4).toInt(), field.value(5).toInt(), field.value(6).toInt(),
                          field.value(7).toInt());
        list.append({field.value(0), field.value(1), field.value(2), field.value(3).toLongLong(), frame,
                     field.value(8)});
    }
    return list;
}

QStringList WineSession::windows()
{
    QString output;
    run(QStringLiteral("listwindows"), {}, &output);
    QStringList lines = output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (lines.isEmpty() || lines.takeLast() != QLatin1String("end"))
        return {"failed"};
    for (QString& line : lines)
        line = line.section(QLatin1Char('\t'), 0, 2);
    return lines;
}

bool WineSession::waitForWindow(const QString& program, const QString& title, QStringList* last)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < patience) {
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

WineWindow WineSession::waitForAnyWindow(const QString& program, const QString& title)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < patience) {
        for (const WineWindow& window : windowList()) {
            if (window.program == program && window.title == title)
                return window;
        }
        QThread::msleep(100);
    }
    return {};
}

bool WineSession::poke(const WineWindow& window, const QString& action, const QString& text)
{
    return run(QStringLiteral("pokewindow"), {QString::number(window.handle), action, text}) == 0;
}

bool WineSession::startWatching(QProcess& watcher)
{
    start(watcher, tools() + QStringLiteral("/watchwindows.exe"));
    return watcher.waitForReadyRead(patience) && watcher.readLine().trimmed() == "watching";
}

QStringList WineSession::stopWatching(QProcess& watcher)
{
    killProgram(QStringLiteral("watchwindows.exe"));
    watcher.waitForFinished(patience);
    const QString output = QString::fromUtf8(watcher.readAllStandardOutput()).remove(QLatin1Char('\r'));
    return output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void WineSession::moveTo(int x, int y)
{
    xdotool({"mousemove", QString::number(x), QString::number(y)});
}

void WineSession::click(int x, int y, int button)
{
    xdotool({"mousemove", QString::number(x), QString::number(y), "click", QString::number(button)});
}

void WineSession::doubleClick(int x, int y)
{
    xdotool({"mousemove", QString::number(x), QString::number(y), "click", "--repeat", "2", "--delay", "50",
             "1"});
}

void WineSession::type(const QString& text)
{
    xdotool({"type", "--delay", "20", text});
}

void WineSession::press(const QString& key)
{
    xdotool({"key", key});
}

void WineSession::xdotool(const QStringList& arguments)
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(QStringLiteral("xdotool"), arguments);
    process.waitForFinished(patience);
}

QImage WineSession::screen() const
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(QStringLiteral("import"),
                  {"-window", "root", "-crop", text(m_screen) + QStringLiteral("+0+0"), "+repage", "-depth",
                   "8", "ppm:-"});
    process.waitForFinished(patience);
    return QImage::fromData(process.readAllStandardOutput(), "PPM");
}

QImage WineSession::screenshot(const QString& name)
{
    QDir().mkpath(evidence());
    const QImage picture = screen();
    picture.save(QStringLiteral("%1/%2-%3.png").arg(evidence(), m_story, name));
    return picture;
}

QImage WineSession::cursor() const
{
    return screenCursor(m_environment.value(QStringLiteral("DISPLAY")));
}

QImage WineSession::screenshotWith(const QString& name, int x, int y, const QColor& colour)
{
    QElapsedTimer timer;
    timer.start();
    QImage picture = screenshot(name);
    while (picture.pixelColor(x, y) != colour && timer.elapsed() < patience)
        picture = screenshot(name);
    return picture;
}
