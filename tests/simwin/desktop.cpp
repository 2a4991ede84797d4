// The desktop's windows.
#include "state.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QThread>

#include <algorithm>
#include <memory>

using simwin::State;
using simwin::Window;

namespace {

// The windows by their parents, from the top down; those at the top under 0.
QHash<qlonglong, QList<qlonglong>> family(const State& windows)
{
    QHash<qlonglong, QList<qlonglong>> children;
    for (const qlonglong window : windows.zOrder)
        children[windows.windows.constFind(window)->parent].append(window);
    return children;
}

} // namespace

namespace simwin {

void setNextHandle(qlonglong handle)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.nextHandle = handle;
}

DWORD setCurrentWindowProcess(DWORD process)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    std::swap(windows.windowProcess, process);
    return process;
}

void setOwner(qlonglong window, qlonglong owner)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    const auto found = windows.windows.find(window);
    if (found != windows.windows.end())
        found->owner = owner;
}

void setProcess(qlonglong window, DWORD process)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    const auto found = windows.windows.find(window);
    if (found != windows.windows.end())
        found->process = process;
}

void setForegroundWindow(qlonglong window)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.foregroundIsSet = true;
    windows.foreground = window;
}

void setRefusesToClose(qlonglong window, bool refuses)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    const auto found = windows.windows.find(window);
    if (found != windows.windows.end())
        found->refusesToClose = refuses;
}

void setAnsweredTitleLength(int length)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.answeredTitleLength = length;
}

} // namespace simwin

namespace {

constexpr DWORD desktopStyle = WS_POPUP | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;

qlonglong number(HWND window)
{
    return static_cast<qlonglong>(reinterpret_cast<LONG_PTR>(window));
}

HWND handle(qlonglong window)
{
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(window));
}

QStringList text(const State& windows, std::initializer_list<qlonglong> values)
{
    QStringList list;
    if (windows.recording) {
        for (const qlonglong value : values)
            list.append(QString::number(value, 16));
    }
    return list;
}

// The window, null with the last error set when there is none.
Window* find(State& windows, HWND window)
{
    const auto found = windows.windows.find(number(window));
    if (found != windows.windows.end())
        return &*found;
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return nullptr;
}

// Everything below `parent`: each child, then everything below that.
void addDescendants(const QHash<qlonglong, QList<qlonglong>>& children, qlonglong parent,
                    QList<qlonglong>& list)
{
    const auto found = children.constFind(parent);
    if (found == children.constEnd())
        return;
    for (const qlonglong child : *found) {
        list.append(child);
        addDescendants(children, child, list);
    }
}

// Calls back without the lock: the callback calls Windows itself.
BOOL callBack(const QList<qlonglong>& list, WNDENUMPROC callback, LPARAM context)
{
    for (const qlonglong window : list) {
        if (!callback(handle(window), context))
            return FALSE;
    }
    return TRUE;
}

// With everything below it and every window that one of them owns.
void destroy(State& windows, qlonglong window)
{
    QList<qlonglong> gone = {window};
    for (int i = 0; i < gone.size(); ++i) {
        for (const qlonglong other : qAsConst(windows.zOrder)) {
            const Window& candidate = *windows.windows.constFind(other);
            if ((candidate.parent == gone.at(i) || candidate.owner == gone.at(i)) && !gone.contains(other))
                gone.append(other);
        }
    }
    for (const qlonglong one : qAsConst(gone)) {
        windows.windows.remove(one);
        windows.zOrder.removeAll(one);
    }
}

// Lets the windows see what was posted to them.
void deliverPosted(State& windows)
{
    while (!windows.posted.isEmpty()) {
        const simwin::PostedMessage posted = windows.posted.takeFirst();
        const auto found = windows.windows.constFind(posted.window);
        if (found == windows.windows.constEnd())
            continue;
        if (posted.message == WM_SYSCOMMAND && posted.wParam == SC_CLOSE && !found->refusesToClose &&
            !(found->style & WS_DISABLED))
            destroy(windows, posted.window);
        if (posted.message == WM_QUIT) {
            const DWORD process = found->process;
            const QList<qlonglong> all = windows.zOrder;
            for (const qlonglong window : all) {
                if (windows.windows.contains(window) && windows.windows[window].process == process)
                    destroy(windows, window);
            }
        }
    }
}

// To the top, beneath the windows that it owns.
void raise(State& windows, qlonglong window)
{
    windows.zOrder.removeAll(window);
    windows.zOrder.prepend(window);
    const QList<qlonglong> all = windows.zOrder;
    for (int i = all.size() - 1; i >= 0; --i) {
        if (windows.windows.constFind(all.at(i))->owner == window)
            raise(windows, all.at(i));
    }
}

// A message to a window of this process is answered by the GUI thread, once it processes events.
void waitForGuiThread()
{
    QCoreApplication* const application = QCoreApplication::instance();
    if (!application || QThread::currentThread() == application->thread())
        return;
    const auto answered = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(
        application, [answered] { answered->release(); }, Qt::QueuedConnection);
    while (!answered->tryAcquire(1, 20) && QCoreApplication::instance()) {
    }
}

} // namespace

HWND WINAPI CreateWindowExW(DWORD extendedStyle, LPCWSTR className, LPCWSTR title, DWORD style, int, int, int,
                            int, HWND parent, HMENU, HINSTANCE, LPVOID)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "CreateWindowExW", {QString::fromWCharArray(className)}))
        return nullptr;
    if (!parent && (style & WS_CHILD)) {
        SetLastError(ERROR_TLW_WITH_WSCHILD);
        return nullptr;
    }
    if (parent && !find(windows, parent))
        return nullptr;
    while (windows.windows.contains(windows.nextHandle) || windows.nextHandle == simwin::desktopHandle)
        windows.nextHandle += 2;
    const qlonglong window = windows.nextHandle;
    windows.nextHandle += 2;
    Window properties;
    properties.process = windows.windowProcess;
    properties.style = style;
    if (!(style & WS_CHILD)) // as Windows adds them
        properties.style |= style & WS_POPUP ? WS_CLIPSIBLINGS : WS_CLIPSIBLINGS | WS_CAPTION;
    properties.extendedStyle = extendedStyle;
    if ((properties.style & WS_CAPTION) == WS_CAPTION && !(style & WS_CHILD))
        properties.extendedStyle |= WS_EX_WINDOWEDGE;
    if (style & WS_CHILD)
        properties.parent = number(parent);
    else
        properties.owner = number(parent);
    properties.className = QString::fromWCharArray(className);
    properties.title = title ? QString::fromWCharArray(title) : QString();
    windows.windows.insert(window, properties);
    if (style & WS_CHILD)
        windows.zOrder.append(window); // beneath its siblings
    else
        windows.zOrder.prepend(window);
    return handle(window);
}

BOOL WINAPI DestroyWindow(HWND window)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "DestroyWindow", text(windows, {number(window)})) || !find(windows, window))
        return FALSE;
    destroy(windows, number(window));
    return TRUE;
}

BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR title)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "SetWindowTextW", text(windows, {number(window)})))
        return FALSE;
    Window* const found = find(windows, window);
    if (!found)
        return FALSE;
    found->title = title ? QString::fromWCharArray(title) : QString();
    return TRUE;
}

LONG WINAPI SetWindowLongW(HWND window, int index, LONG value)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "SetWindowLongW", text(windows, {number(window), index, value})))
        return 0;
    Window* const found = find(windows, window);
    if (!found)
        return 0;
    DWORD& style = index == GWL_STYLE ? found->style : found->extendedStyle;
    const auto before = static_cast<LONG>(style);
    style = static_cast<DWORD>(value);
    return before;
}

LONG WINAPI GetWindowLongW(HWND window, int index)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "GetWindowLongW", text(windows, {number(window), index})))
        return 0;
    if (number(window) == simwin::desktopHandle)
        return index == GWL_STYLE ? static_cast<LONG>(desktopStyle) : 0;
    const Window* const found = find(windows, window);
    if (!found)
        return 0;
    return static_cast<LONG>(index == GWL_STYLE ? found->style : found->extendedStyle);
}

BOOL WINAPI ShowWindow(HWND window, int command)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "ShowWindow", text(windows, {number(window), command})))
        return FALSE;
    Window* const found = find(windows, window);
    if (!found)
        return FALSE;
    const bool wasVisible = found->style & WS_VISIBLE;
    if (command == SW_HIDE) {
        found->style &= ~WS_VISIBLE;
        return wasVisible;
    }
    found->style |= WS_VISIBLE;
    const bool wasMinimised = found->style & WS_MINIMIZE;
    if (command == SW_MINIMIZE && !wasMinimised)
        found->wasMaximised = found->style & WS_MAXIMIZE;
    if (command == SW_MINIMIZE || command == SW_RESTORE || command == SW_MAXIMIZE)
        found->style &= ~(WS_MINIMIZE | WS_MAXIMIZE);
    if (command == SW_MINIMIZE)
        found->style |= WS_MINIMIZE;
    if (command == SW_MAXIMIZE || (command == SW_RESTORE && wasMinimised && found->wasMaximised))
        found->style |= WS_MAXIMIZE;
    const bool becomesActive = command == SW_SHOW ? !wasVisible : command != SW_MINIMIZE;
    if (becomesActive && found->parent == 0)
        raise(windows, number(window));
    return wasVisible;
}

BOOL WINAPI BringWindowToTop(HWND window)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "BringWindowToTop", text(windows, {number(window)})) ||
        !find(windows, window))
        return FALSE;
    raise(windows, number(window));
    return TRUE;
}

BOOL WINAPI IsIconic(HWND window)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "IsIconic", text(windows, {number(window)})))
        return FALSE;
    const Window* const found = find(windows, window);
    return found && (found->style & WS_MINIMIZE) ? TRUE : FALSE;
}

HWND WINAPI GetAncestor(HWND window, UINT which)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "GetAncestor", text(windows, {number(window), which})) ||
        number(window) == simwin::desktopHandle)
        return nullptr;
    const Window* const found = find(windows, window);
    if (!found || which != GA_PARENT) // nothing else is asked for
        return nullptr;
    return handle(found->parent == 0 ? simwin::desktopHandle : found->parent);
}

HWND WINAPI GetForegroundWindow(void)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "GetForegroundWindow"))
        return nullptr;
    if (windows.foregroundIsSet)
        return handle(windows.foreground);
    for (const qlonglong window : qAsConst(windows.zOrder)) {
        const Window& candidate = *windows.windows.constFind(window);
        if (candidate.parent == 0 && (candidate.style & WS_VISIBLE) && !(candidate.style & WS_MINIMIZE))
            return handle(window);
    }
    return nullptr;
}

HWND WINAPI GetDesktopWindow(void)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    simwin::enter(windows, "GetDesktopWindow");
    return handle(simwin::desktopHandle);
}

DWORD WINAPI GetCurrentProcessId(void)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    simwin::enter(windows, "GetCurrentProcessId");
    return static_cast<DWORD>(QCoreApplication::applicationPid());
}

DWORD WINAPI GetWindowThreadProcessId(HWND window, LPDWORD processId)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "GetWindowThreadProcessId", text(windows, {number(window)})))
        return 0;
    const Window* const found = find(windows, window);
    if (!found)
        return 0;
    if (processId)
        *processId = found->process;
    return found->process + 1; // the thread
}

BOOL WINAPI EnumWindows(WNDENUMPROC callback, LPARAM context)
{
    QList<qlonglong> list;
    {
        State& windows = simwin::state();
        const QMutexLocker locker(&windows.lock);
        deliverPosted(windows);
        if (!simwin::enter(windows, "EnumWindows"))
            return FALSE;
        list = family(windows).value(0);
    }
    return callBack(list, callback, context);
}

BOOL WINAPI EnumChildWindows(HWND parent, WNDENUMPROC callback, LPARAM context)
{
    QList<qlonglong> list;
    {
        State& windows = simwin::state();
        const QMutexLocker locker(&windows.lock);
        if (!simwin::enter(windows, "EnumChildWindows", text(windows, {number(parent)})))
            return FALSE;
        // A handle that is no window's is the desktop widget's: Qt has its own natively.
        if (!parent)
            list = family(windows).value(0); // as EnumWindows
        else
            addDescendants(family(windows), windows.windows.contains(number(parent)) ? number(parent) : 0,
                           list);
    }
    return callBack(list, callback, context);
}

BOOL WINAPI GetWindowInfo(HWND window, PWINDOWINFO info)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "GetWindowInfo", text(windows, {number(window), info->cbSize})))
        return FALSE;
    const Window* const found = find(windows, window);
    if (!found || info->cbSize != sizeof *info)
        return FALSE;
    info->dwStyle = found->style;
    info->dwExStyle = found->extendedStyle;
    return TRUE;
}

int WINAPI GetWindowTextW(HWND window, LPWSTR title, int size)
{
    bool ours = false;
    {
        State& windows = simwin::state();
        const QMutexLocker locker(&windows.lock);
        if (!simwin::enter(windows, "GetWindowTextW", text(windows, {number(window), size})))
            return 0;
        const Window* const found = find(windows, window);
        if (!found)
            return 0;
        ours = found->process == static_cast<DWORD>(QCoreApplication::applicationPid());
    }
    if (ours)
        waitForGuiThread();
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    const Window* const found = find(windows, window);
    if (!found || size < 1)
        return 0;
    const int length = std::min(found->title.size(), size - 1);
    std::copy_n(found->title.utf16(), length, reinterpret_cast<ushort*>(title));
    title[length] = 0;
    return windows.answeredTitleLength < 0 ? length : windows.answeredTitleLength;
}

BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "PostMessageW",
                       text(windows, {number(window), message, static_cast<qlonglong>(wParam), lParam})))
        return FALSE;
    if (window && !find(windows, window))
        return FALSE;
    windows.posted.append({number(window), message, wParam}); // to no window: to this thread's own queue
    return TRUE;
}

LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    simwin::enter(windows, "SendMessageW",
                  text(windows, {number(window), message, static_cast<qlonglong>(wParam), lParam}));
    return 0;
}

BOOL WINAPI SystemParametersInfoW(UINT action, UINT parameter, LPVOID data, UINT flags)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    RECT* const area = static_cast<RECT*>(data);
    if (!simwin::enter(
            windows, "SystemParametersInfoW",
            text(windows, {action, parameter, area->left, area->top, area->right, area->bottom, flags})))
        return FALSE;
    if (action == SPI_SETWORKAREA)
        windows.workArea = *area;
    else
        *area = windows.workArea;
    return TRUE;
}
