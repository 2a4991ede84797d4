#include "winapi/windowsnapshot.h"

#include <windows.h>

#include <QHash>

namespace winapi {

namespace {

// Where each window stands.
QHash<qlonglong, int> positions(const QList<qlonglong>& windows)
{
    QHash<qlonglong, int> map;
    map.reserve(windows.size());
    for (int i = 0; i < windows.size(); ++i)
        map.insert(windows.at(i), i);
    return map;
}

// What became of the window at `i` now, which was at `k` before.
void compareWindow(const WindowSnapshot& before, int k, const WindowSnapshot& now, int i,
                   WindowChanges& changes)
{
    const qlonglong window = now.windows.at(i);
    if (before.titles.at(k) != now.titles.at(i))
        changes.retitled.append(window);
    if ((before.extendedStyles.at(k) ^ now.extendedStyles.at(i)) & WS_EX_APPWINDOW)
        changes.appFlagChanged.append(window);
    if ((before.styles.at(k) ^ now.styles.at(i)) & WS_VISIBLE)
        changes.visibilityChanged.append(window);
}

// The flags that decide for every window whose flags changed.
quint32 decidingFlags(const QList<quint32>& flags)
{
    return flags.value(1, 0);
}

void append(QList<WindowEvent>& events, WindowEvent::Kind kind, const QList<qlonglong>& windows)
{
    for (const qlonglong window : windows)
        events.append({kind, window});
}

} // namespace

bool operator==(const WindowEvent& a, const WindowEvent& b)
{
    return a.kind == b.kind && a.window == b.window;
}

WindowChanges changesBetween(const WindowSnapshot& before, const WindowSnapshot& now)
{
    WindowChanges changes;
    if (before.windows == now.windows) { // as nearly always
        for (int i = 0; i < now.windows.size(); ++i)
            compareWindow(before, i, now, i, changes);
        return changes;
    }
    const QHash<qlonglong, int> oldPositions = positions(before.windows);
    const QHash<qlonglong, int> newPositions = positions(now.windows);
    for (const qlonglong window : before.windows) {
        if (!newPositions.contains(window))
            changes.removed.append(window);
    }
    for (int i = 0; i < now.windows.size(); ++i) {
        const int k = oldPositions.value(now.windows.at(i), -1);
        if (k < 0)
            changes.added.append(now.windows.at(i));
        else
            compareWindow(before, k, now, i, changes);
    }
    return changes;
}

QList<WindowEvent> eventsOf(const WindowChanges& changes, const WindowSnapshot& now)
{
    const auto byFlag = [](bool set) { return set ? WindowEvent::Mapped : WindowEvent::Unmapped; };
    QList<WindowEvent> events;
    append(events, WindowEvent::Unmapped, changes.removed);
    append(events, WindowEvent::Mapped, changes.added);
    append(events, byFlag(decidingFlags(now.extendedStyles) & WS_EX_APPWINDOW), changes.appFlagChanged);
    append(events, byFlag(decidingFlags(now.styles) & WS_VISIBLE), changes.visibilityChanged);
    append(events, WindowEvent::Retitled, changes.retitled);
    return events;
}

} // namespace winapi
