#include "support/testwindow.h"

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

namespace {

LPCWSTR wide(const QString& text)
{
    return reinterpret_cast<LPCWSTR>(text.utf16());
}

} // namespace

TestWindow::TestWindow(const QString& title, DWORD style, DWORD extendedStyle, const TestWindow* parent)
{
#ifndef Q_OS_WIN
    const DWORD before = simwin::setCurrentWindowProcess(GetCurrentProcessId());
#endif
    m_handle = CreateWindowExW(extendedStyle, L"STATIC", wide(title), style, 0, 0, 200, 100,
                               parent ? parent->handle() : nullptr, nullptr, nullptr, nullptr);
    if (!m_handle)
        qFatal("cannot open a window");
#ifndef Q_OS_WIN
    simwin::setCurrentWindowProcess(before);
#endif
}

void TestWindow::setTitle(const QString& title)
{
    SetWindowTextW(m_handle, wide(title));
}

void TestWindow::close()
{
    if (m_handle)
        DestroyWindow(m_handle);
    m_handle = nullptr;
}
