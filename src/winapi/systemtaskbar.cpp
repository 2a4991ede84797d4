#include "winapi/systemtaskbar.h"

#include <windows.h>

#include <shellapi.h>

namespace winapi {

void restoreSystemTaskBar()
{
    APPBARDATA data = {};
    data.cbSize = sizeof data; // 48
    data.hWnd = FindWindowW(L"System_TrayWnd", nullptr);
    data.lParam = ABS_ALWAYSONTOP;
    SHAppBarMessage(ABM_SETSTATE, &data);
}

} // namespace winapi
