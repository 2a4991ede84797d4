// What can be asked of a native window and done to it. A window is its HWND's value. A window that is gone,
// or 0, is no failure: nothing happens, and what is asked comes back empty.
//
// The functions run on the caller's thread. A title is answered by the thread that owns the window when it is
// one of this process's, and showing or maximising a window waits for its thread: both take as long as that
// is busy.
#pragma once

#include <QList>
#include <QString>

class QProcess;

namespace winapi {

// Whether it is a top-level window that users would call an application's: marked as one (WS_EX_APPWINDOW),
// or with a border, a system menu or the style of a popup, and no tool window.
bool isApplicationWindow(qlonglong window);

// Shows the window, restored when it is minimised, above all others.
void raiseWindow(qlonglong window);

// The same. Maximises it too, unless the site asks for the standard window-manager behaviour
// (env::standardWindowManager()); `force` maximises it in any case.
void bringWindowToFront(qlonglong window, bool force);

// Asks the window to close, as its close box would: it may refuse, or ask the user.
void closeWindow(qlonglong window);

// Asks the window's thread to quit. Returns whether that could be posted.
bool quitWindow(qlonglong window);

// The window that the user works with; 0 when there is none at the moment.
qlonglong foregroundWindow();

// The id of the window's process, 0 when it is gone.
quint32 windowProcessId(qlonglong window);

// The window's title, its first 255 UTF-16 units; null when it has none.
QString windowTitle(qlonglong window);

// The native handle of Qt's desktop widget. GUI thread only, unlike the rest.
qlonglong desktopWidgetWindow();

// The visible top-level windows, then the visible children, grandchildren and so on of `desktopWidget`: a
// window may stand in the list twice. With a running `process`, its windows instead, visible or not.
QList<qlonglong> enumerateWindows(qlonglong desktopWidget, const QProcess* process = nullptr);

} // namespace winapi
