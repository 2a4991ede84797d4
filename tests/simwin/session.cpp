// The user's session and the system's own task bar.
#include "state.h"

#include <shellapi.h>
#include <wtsapi32.h>

using simwin::State;

namespace simwin {

void setWindowOfClass(const QString& className, quintptr window)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.windowsByClass.insert(className, window);
}

void sessionEvent(DWORD events)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.sessionEvents |= events;
    windows.sessionEventHappened.wakeAll();
}

} // namespace simwin

BOOL WINAPI WTSDisconnectSession(HANDLE server, DWORD session, BOOL wait)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "WTSDisconnectSession",
                       {QString::number(reinterpret_cast<UINT_PTR>(server)), QString::number(session, 16),
                        QString::number(wait)}))
        return FALSE;
    windows.sessionEvents |= WTS_EVENT_DISCONNECT;
    windows.sessionEventHappened.wakeAll();
    return TRUE;
}

BOOL WINAPI WTSWaitSystemEvent(HANDLE server, DWORD mask, DWORD* events)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "WTSWaitSystemEvent",
                       {QString::number(reinterpret_cast<UINT_PTR>(server)), QString::number(mask, 16)})) {
        *events = 0xFFFFFFFF; // nothing is promised of it
        return FALSE;
    }
    const int desktop = windows.resets;
    while (windows.resets != desktop || !(windows.sessionEvents & mask))
        windows.sessionEventHappened.wait(&windows.lock);
    *events = windows.sessionEvents & mask;
    windows.sessionEvents &= ~mask;
    return TRUE;
}

HWND WINAPI FindWindowW(LPCWSTR className, LPCWSTR title)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    const QString name = QString::fromWCharArray(className);
    if (!simwin::enter(windows, "FindWindowW", {name, title ? QString::fromWCharArray(title) : QString()}))
        return nullptr;
    const auto planned = windows.windowsByClass.constFind(name);
    if (planned != windows.windowsByClass.constEnd())
        return reinterpret_cast<HWND>(*planned);
    for (const qlonglong window : qAsConst(windows.zOrder)) {
        const simwin::Window& candidate = *windows.windows.constFind(window);
        if (candidate.parent == 0 && candidate.className == name &&
            (!title || candidate.title == QString::fromWCharArray(title)))
            return reinterpret_cast<HWND>(static_cast<LONG_PTR>(window));
    }
    return nullptr;
}

UINT_PTR WINAPI SHAppBarMessage(DWORD message, PAPPBARDATA data)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    const bool succeeds = simwin::enter(windows, "SHAppBarMessage",
                                        {QString::number(message), QString::number(data->cbSize),
                                         QString::number(reinterpret_cast<UINT_PTR>(data->hWnd)),
                                         QString::number(data->lParam)});
    return succeeds ? 1 : 0;
}

BOOL WINAPI ExitWindowsEx(UINT flags, DWORD reason)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    return simwin::enter(windows, "ExitWindowsEx", {QString::number(flags), QString::number(reason, 16)})
               ? TRUE
               : FALSE;
}
