// stacking
//
// Prints a line whenever something in it has changed: the foreground window, then the visible windows that
// stay above others, the foremost first, as the numbers of their windows on the X display (0: none),
// separated by blanks. Wine itself does not see to it there that these windows are above others, nor always
// that the foreground window has the keyboard. Runs until it is ended.
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

constexpr DWORD period = 50; // ms

std::string numberOf(HWND window)
{
    const HANDLE number = GetPropW(window, L"__wine_x11_whole_window");
    return std::to_string(reinterpret_cast<ULONG_PTR>(number));
}

BOOL CALLBACK visit(HWND window, LPARAM context)
{
    if (IsWindowVisible(window) && (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST))
        *reinterpret_cast<std::string*>(context) += ' ' + numberOf(window);
    return TRUE;
}

} // namespace

int main()
{
    GetDesktopWindow(); // which is made now, if nobody has asked for it
    std::string told;
    for (;; Sleep(period)) {
        std::string stacking = numberOf(GetForegroundWindow());
        EnumWindows(visit, reinterpret_cast<LPARAM>(&stacking));
        if (stacking == told)
            continue;
        told = stacking;
        if (std::puts(told.c_str()) < 0 || std::fflush(stdout) != 0)
            return 0;
    }
}
