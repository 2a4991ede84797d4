#include "winapi/windowtracker.h"

#include "winapi/handle.h"
#include "winapi/windowoperations.h"

#include <windows.h>

#include <QSet>

namespace winapi {

QList<qlonglong> withoutRepetitions(const QList<qlonglong>& windows)
{
    QList<qlonglong> once;
    QSet<qlonglong> seen;
    seen.reserve(windows.size());
    for (const qlonglong window : windows) {
        const int before = seen.size();
        seen.insert(window);
        if (seen.size() > before)
            once.append(window);
    }
    return once;
}

WindowSnapshot inspectWindows(const QList<qlonglong>& windows)
{
    WindowSnapshot snapshot;
    snapshot.windows = windows;
    snapshot.styles.reserve(windows.size());
    snapshot.extendedStyles.reserve(windows.size());
    snapshot.titles.reserve(windows.size());
    for (const qlonglong window : windows) {
        WINDOWINFO info = {};
        info.cbSize = sizeof info;
        GetWindowInfo(toHandle<HWND>(window), &info);
        snapshot.styles.append(info.dwStyle);
        snapshot.extendedStyles.append(info.dwExStyle);
        snapshot.titles.append(windowTitle(window));
    }
    return snapshot;
}

WindowTracker::WindowTracker(qlonglong desktopWidget)
    : m_desktopWidget(desktopWidget)
{}

QList<WindowEvent> WindowTracker::poll()
{
    const QList<qlonglong> enumerated = enumerateWindows(m_desktopWidget);
    const bool sameWindows = enumerated == m_enumerated; // as nearly always
    const WindowSnapshot now =
        inspectWindows(sameWindows ? m_snapshot.windows : withoutRepetitions(enumerated));
    QList<WindowEvent> events;
    if (!m_first)
        events = eventsOf(changesBetween(m_snapshot, now), now);
    m_first = false;
    m_enumerated = enumerated;
    m_snapshot = now;
    return events;
}

} // namespace winapi
