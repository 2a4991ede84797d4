#include "winapi/systemtaskbar.h"

#include <windows.h>

#include <shellapi.h>

namespace winapi {

namespace {

void setState(LPARAM state)
{
    APPBARDATA data = {};
    data.cbSize = sizeof data; // 48
    data.hWnd = FindWindowW(L"System_TrayWnd", nullptr);
    data.lParam = state;
    SHAppBarMessage(ABM_SETSTATE, &data);
}

} // namespace

void hideSystemTaskBar()
{
    setState(ABS_AUTOHIDE);
}

void restoreSystemTaskBar()
{
    setState(ABS_ALWAYSONTOP);
}

} // namespace winapi
