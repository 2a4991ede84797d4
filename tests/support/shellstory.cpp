#include "support/shellstory.h"

#include "shell/launchergrid.h"
#include "shell/taskfitting.h"
#include "support/sandbox.h"

#include <QDir>
#include <QRegularExpression>
#include <QtTest>

namespace {

constexpr int patience = 60000; // ms
constexpr int fixedButtons = 3;
constexpr int arrowWidth = 24;     // pixels
constexpr int closeButtonEdge = 5; // pixels from the panel's corner to within its close button
const QString shellProgram = QStringLiteral("quillet.exe");
const QString token = QStringLiteral("a-token");
// Pictures of the launcher's buttons, in turn.
const char* const pictures[] = {"calculator", "kmail", "krita", "notepad", "okular"};

bool waitUntil(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, patience);
}

QByteArray readIfThere(const QString& path)
{
    return QFile::exists(path) ? Sandbox::readFile(path) : QByteArray();
}

bool isPlain(const QImage& picture, const QRect& part, const QColor& colour)
{
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (picture.pixelColor(x, y) != colour)
                return false;
        }
    }
    return true;
}

} // namespace

ShellStory::ShellStory(const QString& story, int width, int height)
    : m_story(story)
    , m_session(story, width, height)
{
    m_server.data.users.insert(QStringLiteral("*"), {QStringLiteral("tide"), token});
    m_server.data.servers.insert(QStringLiteral("here"),
                                 {QStringLiteral("127.0.0.1"), QStringLiteral("windows")});
    QDir().mkpath(WineSession::evidence());
}

ShellStory::~ShellStory()
{
    look(QStringLiteral("end"));
    if (m_shell.state() != QProcess::NotRunning)
        m_session.killShell(m_shell);
    const char* const kinds[] = {"connected", ">", "<", "disconnected"};
    QByteArray transcript;
    for (const TwEvent& event : m_server.transcript()) {
        const bool isPicture = event.bytes.contains('\0');
        transcript +=
            QByteArray::number(event.time) + " ms " + kinds[event.kind] + ' ' +
            (isPicture ? QByteArray::number(event.bytes.size()) + " bytes" : event.bytes.trimmed()) + '\n';
    }
    Sandbox::writeFile(record(QStringLiteral("server.txt")), transcript);
    Sandbox::writeFile(record(QStringLiteral("log.txt")), readIfThere(logFile()));
    Sandbox::writeFile(record(QStringLiteral("debug.txt")), readIfThere(file(QStringLiteral("debug"))));
    Sandbox::writeFile(record(QStringLiteral("windows.txt")), m_looks.toUtf8());
}

QString ShellStory::record(const QString& name) const
{
    return QStringLiteral("%1/%2-%3").arg(WineSession::evidence(), m_story, name);
}

// --- Applications

void ShellStory::publish(const QString& id, const QColor& colour, const QStringList& options)
{
    TwData::Application application;
    application.name = id;
    application.displayName = id.left(1).toUpper() + id.mid(1);
    application.execPath = WineSession::windowsPath(file(program(id))).replace('/', '\\');
    application.server = QStringLiteral("here");
    const char* const picture = pictures[m_published.size() % 5];
    application.icon = Sandbox::readFile(QStringLiteral(PICTURES "/%1.png").arg(QLatin1String(picture)));
    m_server.data.applications.insert(id, application);
    m_server.data.applicationIds.append(id);
    m_server.data.valid.append(id);
    QFile::copy(WineSession::tools() + QStringLiteral("/testapp.exe"), file(program(id)));
    m_published.append(id);
    m_colours.insert(id, colour);
    setOptions(id, options);
}

bool ShellStory::publishFrom(const QString& file)
{
    QString error;
    const bool isLoaded = m_server.data.load(QStringLiteral(STORIES "/") + file, &error);
    if (!isLoaded)
        qWarning("%s", qPrintable(error));
    m_published = m_server.data.valid;
    return isLoaded;
}

void ShellStory::setOptions(const QString& id, const QStringList& options) const
{
    const QStringList all = QStringList({"--colour", m_colours.value(id).name().mid(1), "--evidence",
                                         WineSession::windowsPath(file(id + QStringLiteral(".evidence")))}) +
                            options;
    Sandbox::writeFile(file(id + QStringLiteral(".options")), all.join('\n').toUtf8() + '\n');
}

QStringList ShellStory::evidence(const QString& id) const
{
    const QByteArray lines = readIfThere(file(id + QStringLiteral(".evidence")));
    return QString::fromUtf8(lines).split('\n', Qt::SkipEmptyParts);
}

bool ShellStory::waitForEvidence(const QString& id, const QString& line) const
{
    return waitUntil([&] { return evidence(id).contains(line); });
}

// --- The start

bool ShellStory::start()
{
    Sandbox::writeFile(m_session.home() + QStringLiteral("/.tidewell.ini"),
                       "[General]\nUserToken=" + token.toUtf8() + '\n');
    return m_server.start() && startShell(m_server.port()) && waitForLauncher();
}

bool ShellStory::startWithPassword(const QString& title)
{
    return m_server.start() && startShell(m_server.port()) && m_session.waitForWindow(shellProgram, title);
}

bool ShellStory::startAlone()
{
    return startShell(0) && waitForLauncher();
}

bool ShellStory::startShell(int port)
{
    if (!m_session.isRunning())
        return false;
    if (port != 0) {
        const QString folder = m_session.driveC() + QStringLiteral("/Program Files/Tidewell Desktop");
        QDir().mkpath(folder);
        Sandbox::writeFile(folder + QStringLiteral("/quillet.ini"),
                           "[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                               QByteArray::number(port) + '\n');
    }
    m_shell.setStandardErrorFile(file(QStringLiteral("debug")));
    m_session.startShell(m_shell, {},
                         {"QT_FORCE_STDERR_LOGGING=1", "QT_MESSAGE_PATTERN=%{type}: %{message}"});
    return m_shell.waitForStarted(patience);
}

bool ShellStory::waitForLauncher()
{
    const bool came = waitUntil([this] {
        const WineWindow window = front();
        return window.program == shellProgram && window.frame == page();
    });
    const bool painted =
        came && waitUntil([this] {
            const QImage picture = m_session.screen();
            return isPlain(picture, QRect(page().right() - 9, page().bottom() - 9, 10, 10),
                           QColor("#e6eaed")) &&
                   isPlain(picture, QRect(bar().right() - 99, bar().bottom() - 9, 10, 10), Qt::white);
        });
    m_session.moveTo(page().center().x(), page().center().y());
    // X sets the cursor when the window beneath it next hears of the mouse.
    return painted && waitUntil([this] {
               m_arrow = m_session.cursor();
               return !m_arrow.isNull();
           });
}

// --- What happened

QString ShellStory::logFile() const
{
    return m_session.home() + QStringLiteral("/.quillet.log");
}

QStringList ShellStory::log() const
{
    QStringList entries;
    for (const LogEntry& entry : LogReader(logFile()).next())
        entries.append(entry.level + QStringLiteral(": ") + entry.message);
    return entries;
}

QStringList ShellStory::debug() const
{
    const QByteArray bytes = readIfThere(file(QStringLiteral("debug")));
    return QString::fromUtf8(bytes).remove('\r').split('\n', Qt::SkipEmptyParts);
}

QStringList ShellStory::warnings() const
{
    static const QRegularExpression form(QStringLiteral("^(warning|critical|fatal): "));
    // Wine has no pictures for message boxes, and a window may be gone when its picture is taken.
    static const QRegularExpression others(QStringLiteral("^(?!.*(HICON|GetDIBits\\(\\) failed))"));
    return debug().filter(form).filter(others);
}

QStringList ShellStory::startsAndEnds() const
{
    static const QRegularExpression form(QStringLiteral("\\A(start|end)_application\\?(\\w+)&\\d+\\z"));
    QStringList list;
    for (const QByteArray& request : m_server.requests()) {
        const QRegularExpressionMatch match = form.match(QString::fromUtf8(request));
        if (match.hasMatch())
            list.append(match.captured(1) + ' ' + match.captured(2));
    }
    return list;
}

// --- The screen

QRect ShellStory::page() const
{
    return {QPoint(0, 0), screen() - QSize(0, shell::taskBarHeight)};
}

QRect ShellStory::bar() const
{
    return {0, screen().height() - shell::taskBarHeight, screen().width(), shell::taskBarHeight};
}

QPoint ShellStory::launcherButton(const QString& id) const
{
    const shell::GridCell cell =
        shell::gridSize(page().size()).cell(static_cast<int>(m_published.indexOf(id)));
    return {cell.column * shell::launcherCell.width() + shell::launcherCell.width() / 2,
            cell.row * shell::launcherCell.height() + shell::launcherCell.width() / 2};
}

QPoint ShellStory::fixedButton(int index) const
{
    return {index * shell::taskButtonWidth + shell::taskButtonWidth / 2, bar().center().y()};
}

int ShellStory::panelEnd() const
{
    return fixedButtons * shell::taskButtonWidth +
           shell::fitTasks(screen().width(), fixedButtons, 0).panelWidth;
}

QPoint ShellStory::panelCloseButton() const
{
    return {panelEnd() - closeButtonEdge - 6, bar().top() + closeButtonEdge + 4};
}

QRect ShellStory::taskButtonFrame(int slot, int tasks) const
{
    const bool scrolls = shell::fitTasks(screen().width(), fixedButtons, tasks).scrolls();
    return {panelEnd() + (scrolls ? arrowWidth : 0) + slot * shell::taskButtonWidth, bar().top(),
            shell::taskButtonWidth, shell::taskBarHeight};
}

QPoint ShellStory::leftArrow() const
{
    return {panelEnd() + arrowWidth / 2, bar().center().y()};
}

QPoint ShellStory::rightArrow(int tasks) const
{
    const int visible = shell::fitTasks(screen().width(), fixedButtons, tasks).visible;
    return {taskButtonFrame(visible, tasks).left() + arrowWidth / 2, bar().center().y()};
}

QPoint ShellStory::logOffButton() const
{
    return {bar().right() - shell::taskButtonWidth / 2, bar().center().y()};
}

bool ShellStory::waitForTaskButtons(int count) const
{
    const int seen = shell::fitTasks(screen().width(), fixedButtons, count).visible;
    return waitUntil([&] {
        const QImage picture = m_session.screen();
        for (int slot = 0; slot < seen; ++slot) {
            if (isPlain(picture, taskButtonFrame(slot, count), Qt::white))
                return false;
        }
        return seen < count || isPlain(picture, taskButtonFrame(seen, count), Qt::white);
    });
}

bool ShellStory::waitForColour(const QColor& colour) const
{
    return waitUntil([&] { return m_session.screen().pixelColor(page().center()) == colour; });
}

WineWindow ShellStory::front()
{
    for (const WineWindow& window : m_session.windowList()) {
        if (window.program != shellProgram || window.frame.top() != bar().top())
            return window;
    }
    return {};
}

bool ShellStory::waitForFront(const QString& program, const QString& title)
{
    return waitUntil([&] {
        const WineWindow window = front();
        return window.program == program && window.title == title;
    });
}

bool ShellStory::waitForPage()
{
    return waitForFront(shellProgram, QStringLiteral("quillet"));
}

bool ShellStory::waitForPageChange(const QImage& before) const
{
    const bool changed = waitUntil([&] {
        const QImage screen = m_session.screen();
        return !screen.isNull() && screen.copy(page()) != before.copy(page());
    });
    // It is painted as a whole when it stays as it is for a moment.
    QImage last;
    return changed && waitUntil([&] {
               const QImage screen = m_session.screen().copy(page());
               const bool stays = !screen.isNull() && screen == last;
               last = screen;
               if (!stays)
                   QTest::qWait(300);
               return stays;
           });
}

bool ShellStory::waitForArrow() const
{
    return waitUntil([this] { return m_session.cursor() == m_arrow; });
}

bool ShellStory::waitForBusyCursor() const
{
    return waitUntil([this] { return m_session.cursor() != m_arrow; });
}

// --- Acts

void ShellStory::launch(const QString& id)
{
    click(launcherButton(id));
}

bool ShellStory::launchAndWait(const QString& id, const QString& title, int tasks)
{
    launch(id);
    return waitForFront(program(id), title) && waitForColour(m_colours.value(id)) &&
           waitForTaskButtons(tasks) && waitForArrow();
}

bool ShellStory::showLauncher()
{
    click(fixedButton(0));
    return waitForPage() && waitUntil([this] {
               return m_session.screen().pixelColor(page().bottomRight()) == QColor("#e6eaed");
           });
}

bool ShellStory::hasKeyboard(const QString& id)
{
    const QString typed = QStringLiteral("typed x");
    const int before = evidence(id).count(typed);
    return waitUntil([&] {
        m_session.type(QStringLiteral("x"));
        return QTest::qWaitFor([&] { return evidence(id).count(typed) > before; }, 500);
    });
}

bool ShellStory::waitForLogOff()
{
    constexpr int loggedOff = 99; // asuser's exit code when Windows was faster than the shell
    return m_shell.waitForFinished(patience) && (m_shell.exitCode() == 0 || m_shell.exitCode() == loggedOff);
}

QImage ShellStory::look(const QString& name)
{
    m_looks += QStringLiteral("%1:\n").arg(name);
    for (const WineWindow& window : m_session.windowList()) {
        const QRect& frame = window.frame;
        m_looks += QStringLiteral("  %1 \"%2\" %3,%4 %5x%6 %7\n")
                       .arg(window.program, window.title)
                       .arg(frame.x())
                       .arg(frame.y())
                       .arg(frame.width())
                       .arg(frame.height())
                       .arg(window.state);
    }
    return m_session.screenshot(name);
}
