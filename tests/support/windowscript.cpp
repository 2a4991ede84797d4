#include "support/windowscript.h"

#include "support/testwindow.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

namespace {

const QStringList actionsWithTitle = {QStringLiteral("open"), QStringLiteral("title")};
const QStringList actionsWithout = {QStringLiteral("hide"),     QStringLiteral("show"),
                                    QStringLiteral("minimise"), QStringLiteral("restore"),
                                    QStringLiteral("maximise"), QStringLiteral("raise"),
                                    QStringLiteral("close")};

} // namespace

WindowScript::WindowScript() = default;
WindowScript::~WindowScript() = default;

bool WindowScript::parse(const QString& line, Event* event)
{
    static const QRegularExpression form(
        QStringLiteral("\\A(\\d+)\\s+(\\w+)\\s+([\\w-]+)(?:\\s+\"([^\"]*)\")?((?:\\s+[\\w=+-]+)*)\\z"));
    const auto match = form.match(line);
    if (!match.hasMatch())
        return false;
    event->time = match.captured(1).toInt();
    event->action = match.captured(2);
    event->name = match.captured(3);
    event->title = match.captured(4);
    event->options = match.captured(5).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const bool hasTitle = match.capturedStart(4) >= 0;
    if (event->action == QLatin1String("style"))
        return !hasTitle && event->options.size() == 1;
    if (!event->options.isEmpty() && event->action != QLatin1String("open"))
        return false;
    return hasTitle ? actionsWithTitle.contains(event->action) : actionsWithout.contains(event->action);
}

bool WindowScript::load(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return false;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    int number = 0;
    int time = 0;
    for (QString line; stream.readLineInto(&line);) {
        ++number;
        static const QRegularExpression comment(QStringLiteral("(\\A|\\s)#.*\\z"));
        line = line.remove(comment).trimmed();
        if (line.isEmpty())
            continue;
        Event event;
        event.line = number;
        if (!parse(line, &event) || event.time < time) {
            *error = QStringLiteral("line %1 is no event or goes back in time: %2").arg(number).arg(line);
            return false;
        }
        time = event.time;
        m_events.append(event);
    }
    return true;
}

int WindowScript::duration() const
{
    return m_events.isEmpty() ? 0 : m_events.last().time;
}

void WindowScript::playUntil(int time)
{
    while (!m_events.isEmpty() && m_events.first().time <= time)
        play(m_events.takeFirst());
}

void WindowScript::play(const Event& event)
{
    const std::shared_ptr<TestWindow> window = m_windows.value(event.name);
    if (static_cast<bool>(window) == (event.action == QLatin1String("open")))
        qFatal("script, line %d: %s is %s", event.line, qPrintable(event.name), window ? "open" : "not open");
    if (event.action == QLatin1String("open")) {
        const TestWindow* parent = nullptr;
        DWORD style = WS_OVERLAPPEDWINDOW | WS_VISIBLE;
        DWORD extendedStyle = 0;
        for (const QString& option : event.options) {
            if (option == QLatin1String("hidden"))
                style &= ~WS_VISIBLE;
            else if (option == QLatin1String("popup"))
                style = (style & WS_VISIBLE) | WS_POPUP | WS_BORDER;
            else if (option == QLatin1String("tool"))
                extendedStyle |= WS_EX_TOOLWINDOW;
            else if (option == QLatin1String("appwindow"))
                extendedStyle |= WS_EX_APPWINDOW;
            else if (option.startsWith(QLatin1String("child=")))
                style = (style & WS_VISIBLE) | WS_CHILD;
            else if (!option.startsWith(QLatin1String("owner=")))
                qFatal("script, line %d: %s", event.line, qPrintable(option));
            if (option.contains(QLatin1Char('='))) {
                parent = m_windows.value(option.section(QLatin1Char('='), 1)).get();
                if (!parent)
                    qFatal("script, line %d: %s", event.line, qPrintable(option));
            }
        }
        const auto opened = std::make_shared<TestWindow>(event.title, style, extendedStyle, parent);
        m_windows.insert(event.name, opened);
        m_names.insert(opened->id(), event.name);
    } else if (event.action == QLatin1String("title")) {
        window->setTitle(event.title);
    } else if (event.action == QLatin1String("hide")) {
        window->show(SW_HIDE);
    } else if (event.action == QLatin1String("show")) {
        window->show(SW_SHOW);
    } else if (event.action == QLatin1String("minimise")) {
        window->show(SW_MINIMIZE);
    } else if (event.action == QLatin1String("restore")) {
        window->show(SW_RESTORE);
    } else if (event.action == QLatin1String("maximise")) {
        window->show(SW_MAXIMIZE);
    } else if (event.action == QLatin1String("raise")) {
        BringWindowToTop(window->handle());
    } else if (event.action == QLatin1String("style")) {
        window->setExtendedStyle(event.options.first() == QLatin1String("+appwindow") ? WS_EX_APPWINDOW : 0);
    } else { // close
        window->close();
        m_windows.remove(event.name);
    }
}
