#include "winapi/windowoperations.h"

#include "env/settings.h"
#include "winapi/handle.h"

#include <windows.h>

#include <QApplication>
#include <QDesktopWidget>
#include <QProcess>

#include <algorithm>

namespace winapi {

namespace {

constexpr int titleLimit = 256; // UTF-16 units, the terminating zero included

struct Enumeration
{
    const QProcess* process = nullptr;
    QList<qlonglong> windows;
};

bool isWanted(HWND window, const QProcess* process)
{
    if (!process)
        return GetWindowLongW(window, GWL_STYLE) & static_cast<LONG>(WS_VISIBLE);
    const quint32 id = windowProcessId(fromHandle(window));
    if (id != process->processId())
        return false;
    qDebug("Process found!!! %d", static_cast<int>(id));
    return true;
}

BOOL CALLBACK addWindow(HWND window, LPARAM context)
{
    auto* const enumeration = reinterpret_cast<Enumeration*>(context);
    if (isWanted(window, enumeration->process))
        enumeration->windows.append(fromHandle(window));
    return TRUE;
}

} // namespace

bool isApplicationWindow(qlonglong window)
{
    const HWND handle = toHandle<HWND>(window);
    const HWND parent = GetAncestor(handle, GA_PARENT);
    if (parent && parent != GetDesktopWindow())
        return false;
    const auto extendedStyle = static_cast<DWORD>(GetWindowLongW(handle, GWL_EXSTYLE));
    if (extendedStyle & WS_EX_APPWINDOW)
        return true;
    const auto style = static_cast<DWORD>(GetWindowLongW(handle, GWL_STYLE));
    return (style & (WS_POPUP | WS_BORDER | WS_SYSMENU)) && !(extendedStyle & WS_EX_TOOLWINDOW);
}

void raiseWindow(qlonglong window)
{
    const HWND handle = toHandle<HWND>(window);
    ShowWindow(handle, IsIconic(handle) ? SW_RESTORE : SW_SHOW);
    BringWindowToTop(handle);
}

void bringWindowToFront(qlonglong window, bool force)
{
    raiseWindow(window);
    if (force || !env::standardWindowManager())
        ShowWindow(toHandle<HWND>(window), SW_MAXIMIZE);
}

// A message to no window would go to this thread's own queue.
void closeWindow(qlonglong window)
{
    if (window == 0)
        return;
    PostMessageW(toHandle<HWND>(window), WM_SYSCOMMAND, SC_CLOSE, 0);
}

bool quitWindow(qlonglong window)
{
    return window != 0 && PostMessageW(toHandle<HWND>(window), WM_QUIT, 0, 0);
}

qlonglong foregroundWindow()
{
    return fromHandle(GetForegroundWindow());
}

quint32 windowProcessId(qlonglong window)
{
    DWORD id = 0;
    GetWindowThreadProcessId(toHandle<HWND>(window), &id);
    return id;
}

QString windowTitle(qlonglong window)
{
    WCHAR title[titleLimit + 1] = {};
    // A window of this process answers with whatever length its window procedure likes.
    const int length = std::min(GetWindowTextW(toHandle<HWND>(window), title, titleLimit), titleLimit - 1);
    return length < 1 ? QString() : QString::fromWCharArray(title, length);
}

qlonglong desktopWidgetWindow()
{
    return static_cast<qlonglong>(QApplication::desktop()->winId());
}

QList<qlonglong> enumerateWindows(qlonglong desktopWidget, const QProcess* process)
{
    Enumeration enumeration{process, {}};
    const auto context = reinterpret_cast<LPARAM>(&enumeration);
    EnumWindows(addWindow, context);
    EnumChildWindows(toHandle<HWND>(desktopWidget), addWindow, context);
    return enumeration.windows;
}

} // namespace winapi
