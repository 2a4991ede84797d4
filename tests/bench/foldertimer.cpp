#include "bench/foldertimer.h"

#include <QFile>
#include <QListView>
#include <QProxyStyle>

#include <algorithm>
#include <cstdio>

#ifdef Q_OS_WIN
#include <windows.h>

#include <psapi.h>
#endif

// Sees the entries that a view paints. (To ask a view what it shows would make it lay them out.)
class WatchedStyle : public QProxyStyle
{
public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override
    {
        QProxyStyle::drawControl(element, option, painter, widget);
        if (element == CE_ItemViewItem)
            lastView = widget;
    }

    mutable const QWidget* lastView = nullptr; // that painted an entry
};

namespace {

constexpr QSize page(1920, 1038);
constexpr int quiet = 1000; // ms without painting: nothing more comes

double microseconds(const QElapsedTimer& clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1000;
}

// The most memory that this process had in use, in KiB.
double peakMemory()
{
#ifdef Q_OS_WIN
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.PeakWorkingSetSize) / 1024;
#else
    QFile file(QStringLiteral("/proc/self/status"));
    file.open(QIODevice::ReadOnly);
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).simplified().split(' ').first().toDouble();
    }
    return 0;
#endif
}

} // namespace

FolderTimer::FolderTimer(int& argc, char** argv)
    : QApplication(argc, argv)
    , m_style(new WatchedStyle)
{
    setStyle(m_style);
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(quiet);
    connect(&m_quiet, &QTimer::timeout, this, &FolderTimer::goOn);
    connect(&m_round, &QTimer::timeout, this, [this] {
        m_gap = std::max(m_gap, microseconds(m_sinceRound));
        m_sinceRound.start();
    });
}

int FolderTimer::measure(QWidget* window, QListView* view, bool watchEventLoop,
                         const std::function<void()>& enterFolder)
{
    m_view = view;
    m_enterFolder = enterFolder;
    m_watchEventLoop = watchEventLoop;
    window->resize(page);
    window->show();
    m_quiet.start();
    return exec();
}

void FolderTimer::isLoaded()
{
    if (m_clock.isValid() && m_loaded == 0)
        m_loaded = microseconds(m_clock);
    m_quiet.start();
}

bool FolderTimer::notify(QObject* receiver, QEvent* event)
{
    const bool isView = m_view && receiver == m_view->viewport() && event->type() == QEvent::Paint;
    if (isView)
        m_style->lastView = nullptr;
    const bool result = QApplication::notify(receiver, event);
    if (isView)
        isPainted();
    return result;
}

void FolderTimer::isPainted()
{
    m_quiet.start();
    if (!m_clock.isValid() || m_style->lastView != m_view)
        return;
    m_last = microseconds(m_clock);
    if (m_first == 0)
        m_first = m_last;
}

void FolderTimer::goOn()
{
    if (!m_clock.isValid()) {
        if (m_watchEventLoop)
            m_round.start(0);
        m_sinceRound.start();
        m_clock.start();
        m_enterFolder();
    } else if (m_loaded > 0) {
        tell();
        quit();
    }
}

void FolderTimer::tell() const
{
    const double peak = peakMemory();
    const QAbstractItemModel* const model = m_view->model();
    const int rows = model->rowCount(m_view->rootIndex());
    int inView = 0;
    for (int row = 0; row < rows; ++row) {
        const QRect entry = m_view->visualRect(model->index(row, 0, m_view->rootIndex()));
        inView += m_view->viewport()->rect().intersects(entry) ? 1 : 0;
    }
    const std::pair<const char*, double> values[] = {
        {"rows", rows},   {"view", inView}, {"first", m_first}, {"loaded", m_loaded},
        {"last", m_last}, {"gap", m_gap},   {"peak", peak}};
    for (const auto& value : values)
        std::printf("%s %.0f\n", value.first, value.second);
}
