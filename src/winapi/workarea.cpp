#include "winapi/workarea.h"

#include <windows.h>

#include <QRect>
#include <QThread>

namespace winapi {

namespace {

constexpr unsigned long pause = 10; // ms

// Commands of the system's task bar: it lays itself and the desktop out anew.
constexpr WPARAM taskBarCommands[] = {419, 416};

} // namespace

void setWorkArea(const QRect& rect)
{
    qDebug("Resizing to %dx%d", rect.width(), rect.height());
    RECT edges = {rect.left(), rect.top(), rect.right(), rect.bottom()};
    if (!SystemParametersInfoW(SPI_SETWORKAREA, 0, &edges, SPIF_SENDCHANGE)) {
        qDebug("Cannot change work area");
        return;
    }
    const HWND taskBar =
        FindWindowW(L"Shell_TrayWnd", nullptr); // null when there is none: messages are lost then
    for (const WPARAM command : taskBarCommands) {
        SendMessageW(taskBar, WM_COMMAND, command, 0);
        QThread::msleep(pause);
    }
}

} // namespace winapi
