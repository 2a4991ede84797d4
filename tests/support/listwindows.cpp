// listwindows
//
// Prints one line for every visible top-level window, the foremost first, in UTF-8: the program that it
// belongs to, its class, its title, its handle as a decimal number, the position and size of its frame on the
// screen (x, y, width, height) and "normal", "minimised" or "maximised", separated by tabs. The last line is
// "end".
#include "windowtext.h"

namespace {

BOOL CALLBACK visit(HWND window, LPARAM)
{
    if (!IsWindowVisible(window))
        return TRUE;
    wchar_t windowClass[256] = L"";
    wchar_t title[256] = L"";
    GetClassNameW(window, windowClass, 256);
    GetWindowTextW(window, title, 256);
    print(programOf(window), '\t');
    print(windowClass, '\t');
    for (wchar_t* at = title; *at; ++at) {
        if (*at == L'\t' || *at == L'\n' || *at == L'\r')
            *at = L' ';
    }
    print(title, '\t');
    RECT frame = {};
    GetWindowRect(window, &frame);
    const char* const state = IsIconic(window) ? "minimised" : IsZoomed(window) ? "maximised" : "normal";
    std::printf("%lld\t%ld\t%ld\t%ld\t%ld\t%s\n", static_cast<long long>(reinterpret_cast<LONG_PTR>(window)),
                frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top, state);
    return TRUE;
}

} // namespace

int main()
{
    if (!EnumWindows(visit, 0))
        return 1;
    std::puts("end");
}
