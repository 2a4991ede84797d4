// bench_session [--rest]
//
// The shell as a whole process, beside one that shows a plain window: from its start to the painted task bar
// and launcher; with "--rest", what it takes in a minute in which nothing happens, and its memory.
//
// The measured processes are this program itself, started with "--shell" or "--window".
#include "app/shellmain.h"
#include "catalogue/cataloguefiles.h"
#include "resources/resources.h"
#include "shell/appbutton.h"
#include "shell/menu.h"
#include "shell/tabbar.h"

#include "bench/figures.h"
#include "bench/otherwindows.h"
#include "support/sandbox.h"
#include "support/twserver/twserver.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>

#ifdef Q_OS_WIN
#include <windows.h>

#include <psapi.h>
#endif

namespace {

constexpr int applications = 48; // of the server
constexpr int windows = 40;      // of another program
constexpr int rounds = 25;       // in which they come and go
constexpr int runs = 4;          // starts that count
constexpr int settling = 2000;   // ms
constexpr int minute = 60000;    // ms
constexpr int bareShare = 12;    // the plain window is watched for so much less
constexpr int patience = 60000;  // ms, for the windows of a round

// Microseconds on a clock that all processes share.
double now()
{
    using namespace std::chrono;
    return duration<double, std::micro>(steady_clock::now().time_since_epoch()).count();
}

#ifdef Q_OS_WIN
double microseconds(const FILETIME& time)
{
    return ((static_cast<double>(time.dwHighDateTime) * 4294967296.0) + time.dwLowDateTime) / 10;
}
#endif

// The processor time that this process has used.
double processorTime()
{
#ifdef Q_OS_WIN
    FILETIME created;
    FILETIME ended;
    FILETIME kernel;
    FILETIME user;
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    return microseconds(kernel) + microseconds(user);
#else
    return 1e6 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
#endif
}

// Memory of this process that is in use, in KiB.
long memory()
{
#ifdef Q_OS_WIN
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<long>(counters.WorkingSetSize / 1024);
#else
    QFile file(QStringLiteral("/proc/self/status"));
    file.open(QIODevice::ReadOnly);
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).simplified().split(' ').first().toLong();
    }
    return 0;
#endif
}

void tell(const char* what, double value)
{
    std::printf("%s %.0f\n", what, value);
    std::fflush(stdout);
}

// Lets events be processed until the condition holds, or for so many milliseconds.
template <typename Condition>
bool waitFor(Condition holds, int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (!holds() && timer.elapsed() < milliseconds) {
        QCoreApplication::processEvents();
        QThread::msleep(5);
    }
    return holds();
}

// --- Within the measured process

// Sees the windows painted, and then does what the environment asks for.
class Observer : public QObject
{
public:
    static bool wanted;
    // Whether the window is the whole of it.
    static bool plain;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        if (plain || watched->metaObject() == &TabBar::staticMetaObject)
            isPainted(m_bar);
        if (plain || watched->metaObject() == &Menu::staticMetaObject)
            isPainted(m_launcher);
        return false;
    }

private:
    // The painting itself follows, with everything in the window.
    void isPainted(double& time)
    {
        if (time > 0)
            return;
        time = 1;
        QTimer::singleShot(0, this, [this, &time] {
            time = now();
            if (m_bar > 1 && m_launcher > 1 && !m_told)
                goOn();
        });
    }

    void goOn()
    {
        m_told = true;
        tell("bar", m_bar);
        tell("launcher", m_launcher);
        int buttons = 0;
        for (const QWidget* const widget : QApplication::allWidgets())
            buttons += widget->metaObject() == &AppButton::staticMetaObject;
        tell("applications", buttons);
        const int rest = qEnvironmentVariableIntValue("BENCH_REST");
        if (rest > 0)
            QTimer::singleShot(settling, this, [this, rest] { measureRest(rest); });
        else
            QCoreApplication::exit(0);
    }

    void measureRest(int milliseconds)
    {
        tell("memory", static_cast<double>(memory()));
        if (!plain) {
            m_windows = std::make_unique<OtherWindows>(windows);
            if (!waitFor([] { return tasks() == windows; }, patience))
                QCoreApplication::exit(1);
        }
        QTimer::singleShot(settling, this, [this, milliseconds] {
            tell("windows", static_cast<double>(memory()));
            const double before = processorTime();
            QTimer::singleShot(milliseconds, this, [this, before] {
                tell("processor", processorTime() - before);
                const bool followed = plain || letWindowsComeAndGo();
                QTimer::singleShot(settling, this, [this, followed] {
                    tell("after", static_cast<double>(memory()));
                    m_windows.reset();
                    QCoreApplication::exit(followed ? 0 : 1);
                });
            });
        });
    }

    bool letWindowsComeAndGo() const
    {
        bool followed = true;
        for (int round = 0; round < rounds && followed; ++round) {
            followed = hideWindows();
            m_windows->setVisible(true);
            followed &= waitFor([] { return tasks() == windows; }, patience);
        }
        return hideWindows() && followed;
    }

    // When a window goes, the shell shows the one whose turn it is then, even if that was hidden meanwhile.
    bool hideWindows() const
    {
        for (int again = 0; again < patience / settling; ++again) {
            m_windows->setVisible(false);
            if (waitFor([] { return tasks() == 0; }, settling))
                return true;
        }
        return false;
    }

    static int tasks()
    {
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (const auto bar = qobject_cast<TabBar*>(widget))
                return bar->count() - bar->fixedCount();
        }
        return -1;
    }

    double m_bar = 0;
    double m_launcher = 0;
    bool m_told = false;
    std::unique_ptr<OtherWindows> m_windows;
};

bool Observer::wanted = false;
bool Observer::plain = false;

void observe()
{
    if (Observer::wanted)
        qApp->installEventFilter(new Observer); // as long as the process
}
Q_COREAPP_STARTUP_FUNCTION(observe)

int showWindow(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QLabel window(QStringLiteral("window"));
    window.resize(800, 42);
    window.show();
    return QApplication::exec();
}

void silent(QtMsgType, const QMessageLogContext&, const QString&) {}

// --- Around it

using Report = QMap<QByteArray, double>;

class Measured : public QProcess
{
public:
    Measured(const char* mode, const QString& path, int rest)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!path.isEmpty())
            environment.insert(QStringLiteral("PATH"), path);
        environment.insert(QStringLiteral("BENCH_REST"), QString::number(rest));
        setProcessEnvironment(environment);
        setProcessChannelMode(ForwardedErrorChannel);
        m_start = now();
        start(QCoreApplication::applicationFilePath(), {QLatin1String(mode)});
    }

    // Times since the start; empty when something went wrong.
    Report report()
    {
        Report values;
        if (!waitForFinished(300000) || exitCode() != 0)
            return values;
        for (const QByteArray& line : readAllStandardOutput().split('\n')) {
            const QList<QByteArray> words = line.simplified().split(' ');
            if (words.size() == 2)
                values.insert(words[0], words[1].toDouble());
        }
        for (const char* time : {"bar", "launcher"})
            values[time] -= m_start;
        return values;
    }

private:
    double m_start = 0;
};

bool measureStart(const char* road, const QString& path)
{
    Figures bar;
    Figures launcher;
    int buttons = 0;
    for (int run = 0; run <= runs; ++run) {
        Report ours = Measured("--shell", path, 0).report();
        Report bare = Measured("--window", path, 0).report();
        buttons = static_cast<int>(ours.value("applications"));
        if (buttons == 0 || bare.isEmpty())
            return false;
        if (run == 0) // the first finds nothing in memory
            continue;
        bar.ours.push_back(ours["bar"]);
        bar.bare.push_back(bare["bar"]);
        launcher.ours.push_back(ours["launcher"]);
        launcher.bare.push_back(bare["launcher"]);
    }
    printLine(qPrintable(QStringLiteral("start to task bar, %1").arg(QLatin1String(road))), bar);
    printLine(qPrintable(QStringLiteral("start to launcher, %1, %2").arg(QLatin1String(road)).arg(buttons)),
              launcher);
    return true;
}

bool measureRest(const QString& path)
{
    // One after the other: the shell would take the plain window for a task.
    Report bare = Measured("--window", path, minute / bareShare).report();
    Report ours = Measured("--shell", path, minute).report();
    if (ours.isEmpty() || bare.isEmpty())
        return false;
    std::printf("processor time of a minute at rest with %d windows: %.0f ms (plain window: %.0f ms)\n",
                windows, ours["processor"] / 1000, bareShare * bare["processor"] / 1000);
    std::printf("memory at rest: %.0f KiB (plain window: %.0f KiB), with %d windows: %.0f KiB\n",
                ours["memory"], bare["memory"], windows, ours["windows"]);
    std::printf("memory when %d windows came and went: %.0f KiB\n", rounds * windows, ours["after"]);
    return true;
}

#ifndef Q_OS_WIN
// A folder with everything in it that the built-in catalogue starts: here a path of Windows' is a file's
// name.
QString makePrograms(const Sandbox& sandbox)
{
    const QString folder = sandbox.scratch() + QStringLiteral("/programs");
    QDir().mkpath(folder);
    initResources();
    for (const QString& id : catalogue::applicationIds())
        Sandbox::writeFile(
            folder + QLatin1Char('/') + catalogue::applicationValue(id, QStringLiteral("command")), "x");
    return folder;
}
#endif

void fillServer(TwServer& server)
{
    QImage picture(64, 64, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    QByteArray icon;
    QBuffer buffer(&icon);
    picture.save(&buffer, "PNG");
    server.data.users.insert(QStringLiteral("clerk"), {QStringLiteral("tide"), QStringLiteral("the token")});
    server.data.servers.insert(QStringLiteral("host"),
                               {QStringLiteral("127.0.0.1"), QStringLiteral("windows")});
    for (int i = 0; i < applications; ++i) {
        const QString id = QStringLiteral("application %1").arg(i);
        TwData::Application application;
        application.name = application.displayName = id;
        application.execPath = QStringLiteral("x.exe");
        application.arguments = QStringLiteral("-a"); // an answer without text lets the shell wait
        application.server = QStringLiteral("host");
        application.icon = icon;
        server.data.applications.insert(id, application);
        server.data.valid.append(id);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QByteArray mode = argc > 1 ? argv[1] : "";
    if (mode == "--shell" || mode == "--window") {
        qInstallMessageHandler(silent);
        const MeasuredDesktop desktop;
        Observer::wanted = true;
        Observer::plain = mode == "--window";
        return Observer::plain ? showWindow(argc, argv) : app::shellMain();
    }

    const QGuiApplication application(argc, argv); // makes pictures
    const Sandbox sandbox;
#ifdef Q_OS_WIN
    const QString path;
#else
    const QString path = makePrograms(sandbox);
#endif
    bool right = true;
    if (mode == "--rest") {
        right = measureRest(path);
    } else {
        printHeader();
        right = measureStart("built-in", path);
        TwServer server;
        fillServer(server);
        right &= server.start();
        sandbox.writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                              QByteArray::number(server.port()) + '\n');
        sandbox.writeToken("[General]\nUserToken=the token\n");
        right &= measureStart("server", path);
    }
    if (!right)
        std::fprintf(stderr, "the shell did not start, or did not follow the windows\n");
    return right ? 0 : 1;
}
