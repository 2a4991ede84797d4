// What the window tracker sees, and what it makes of it. Functions on values.
#pragma once

#include <QList>
#include <QStringList>

namespace winapi {

// The windows at one moment, in the order of their enumeration; index for index. A window stands in it once.
struct WindowSnapshot
{
    QList<qlonglong> windows;
    QList<quint32> styles;         // WINDOWINFO::dwStyle
    QList<quint32> extendedStyles; // WINDOWINFO::dwExStyle
    QStringList titles;
};

// How one snapshot differs from the one before.
struct WindowChanges
{
    QList<qlonglong> removed; // in the old order; the others in the new one
    QList<qlonglong> added;
    QList<qlonglong> retitled;          // a title that is null and one that is empty are the same
    QList<qlonglong> appFlagChanged;    // WS_EX_APPWINDOW
    QList<qlonglong> visibilityChanged; // WS_VISIBLE
};

WindowChanges changesBetween(const WindowSnapshot& before, const WindowSnapshot& now);

struct WindowEvent
{
    enum Kind
    {
        Unmapped,
        Mapped,
        Retitled,
    };
    Kind kind = Unmapped;
    qlonglong window = 0;
};

bool operator==(const WindowEvent& a, const WindowEvent& b);

// What is to be told of the changes that led to `now`, in this order: what went, what came, what a flag says,
// what has another title.
//
// Wanted: whether a window whose flag changed is told as mapped or unmapped is read from the flags of the
// second window in `now`, whichever that is; without a second window it is unmapped.
QList<WindowEvent> eventsOf(const WindowChanges& changes, const WindowSnapshot& now);

} // namespace winapi
