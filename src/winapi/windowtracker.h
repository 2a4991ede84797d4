#pragma once

#include "winapi/windowsnapshot.h"

namespace winapi {

// Each window of an enumeration once, at its first place.
QList<qlonglong> withoutRepetitions(const QList<qlonglong>& windows);

// Styles and titles of these windows now. One that has vanished meanwhile has no flags and no title.
WindowSnapshot inspectWindows(const QList<qlonglong>& windows);

// Compares the windows of every poll with those of the one before. Lives on the thread that polls.
class WindowTracker
{
public:
    // See desktopWidgetWindow().
    explicit WindowTracker(qlonglong desktopWidget);

    // What happened since the last poll. The first one only learns what is there.
    QList<WindowEvent> poll();

private:
    const qlonglong m_desktopWidget;
    bool m_first = true;
    // Of the last poll: what was enumerated, repetitions included, and what came of it.
    QList<qlonglong> m_enumerated;
    WindowSnapshot m_snapshot;
};

} // namespace winapi
