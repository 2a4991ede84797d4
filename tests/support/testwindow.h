#pragma once

#include <windows.h>

#include <QString>

// A native window of a test's own, opened, changed and closed with Windows' own calls, so that the same test
// means the same on Windows and on the simulated one. It belongs to this process on both.
class TestWindow
{
public:
    explicit TestWindow(const QString& title, DWORD style = WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                        DWORD extendedStyle = 0, const TestWindow* parent = nullptr);
    ~TestWindow() { close(); }
    Q_DISABLE_COPY(TestWindow)

    HWND handle() const { return m_handle; }
    qlonglong id() const { return static_cast<qlonglong>(reinterpret_cast<LONG_PTR>(m_handle)); }

    // The style, of which WS_VISIBLE, WS_MINIMIZE and WS_MAXIMIZE tell how it is shown.
    DWORD style() const { return static_cast<DWORD>(GetWindowLongW(m_handle, GWL_STYLE)); }

    void setTitle(const QString& title);
    void show(int command) { ShowWindow(m_handle, command); }
    void setStyle(DWORD style) { SetWindowLongW(m_handle, GWL_STYLE, static_cast<LONG>(style)); }
    void setExtendedStyle(DWORD style) { SetWindowLongW(m_handle, GWL_EXSTYLE, static_cast<LONG>(style)); }
    void close();

private:
    HWND m_handle = nullptr;
};
