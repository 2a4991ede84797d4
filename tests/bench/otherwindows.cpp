#include "bench/otherwindows.h"

#include <windows.h>

#include <QElapsedTimer>
#include <QStringList>
#include <QThread>

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

namespace {

HWND handle(qlonglong window)
{
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(window));
}

#ifdef Q_OS_WIN
HWND g_taskBar = nullptr;

struct Search
{
    DWORD process = 0;
    QList<qlonglong> windows;
};

BOOL CALLBACK addWindow(HWND window, LPARAM context)
{
    auto* const search = reinterpret_cast<Search*>(context);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == search->process && IsWindowVisible(window))
        search->windows.append(static_cast<qlonglong>(reinterpret_cast<LONG_PTR>(window)));
    return TRUE;
}
#endif

} // namespace

#ifdef Q_OS_WIN

MeasuredDesktop::MeasuredDesktop()
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"Shell_TrayWnd";
    RegisterClassW(&windowClass);
    g_taskBar = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_TOPMOST, windowClass.lpszClassName, L"", WS_POPUP, 0,
                                0, 0, 0, nullptr, nullptr, windowClass.hInstance, nullptr);
}

MeasuredDesktop::~MeasuredDesktop()
{
    DestroyWindow(g_taskBar);
}

OtherWindows::OtherWindows(int number)
{
    QStringList arguments = {QStringLiteral("--title"), QStringLiteral("window 0")};
    for (int i = 1; i < number; ++i)
        arguments += {QStringLiteral("--window"), QStringLiteral("window %1").arg(i)};
    m_program.start(QStringLiteral(TESTAPP), arguments);
    m_program.waitForStarted();
    QElapsedTimer timer;
    timer.start();
    while (m_handles.size() < number && timer.elapsed() < 30000) {
        QThread::msleep(20);
        Search search;
        search.process = static_cast<DWORD>(m_program.processId());
        EnumWindows(addWindow, reinterpret_cast<LPARAM>(&search));
        m_handles = search.windows;
    }
}

OtherWindows::~OtherWindows()
{
    m_program.kill();
    m_program.waitForFinished();
}

void OtherWindows::setVisible(bool visible) const
{
    for (const qlonglong window : m_handles)
        ShowWindowAsync(handle(window), visible ? SW_SHOW : SW_HIDE);
}

#else

MeasuredDesktop::MeasuredDesktop()
{
    simwin::reset();
    simwin::setRecording(false);
}

MeasuredDesktop::~MeasuredDesktop() = default;

OtherWindows::OtherWindows(int number)
{
    for (int i = 0; i < number; ++i) {
        const QString title = QStringLiteral("window %1").arg(i);
        const HWND window = CreateWindowExW(0, L"TEST", reinterpret_cast<LPCWSTR>(title.utf16()),
                                            WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200, 100, nullptr,
                                            nullptr, nullptr, nullptr);
        m_handles.append(static_cast<qlonglong>(reinterpret_cast<LONG_PTR>(window)));
    }
}

OtherWindows::~OtherWindows()
{
    for (const qlonglong window : qAsConst(m_handles))
        DestroyWindow(handle(window));
}

void OtherWindows::setVisible(bool visible) const
{
    for (const qlonglong window : m_handles)
        ShowWindow(handle(window), visible ? SW_SHOW : SW_HIDE);
}

#endif
