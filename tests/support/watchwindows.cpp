// watchwindows
//
// Watches the top-level windows of all programs until it is ended, and prints a line for each change, however
// short: "watching" at first, then "shown", "hidden" or "moved" with the program that the window belongs to,
// its handle as a decimal number and its title, separated by tabs. In UTF-8.
#include "windowtext.h"

namespace {

void CALLBACK tell(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG child, DWORD, DWORD)
{
    if (!window || object != OBJID_WINDOW || child != CHILDID_SELF)
        return;
    if (GetAncestor(window, GA_PARENT) != GetDesktopWindow())
        return;
    wchar_t title[256] = L"";
    GetWindowTextW(window, title, 256);
    std::printf("%s\t", event == EVENT_OBJECT_SHOW   ? "shown"
                        : event == EVENT_OBJECT_HIDE ? "hidden"
                                                     : "moved");
    print(programOf(window), '\t');
    std::printf("%lld\t", static_cast<long long>(reinterpret_cast<LONG_PTR>(window)));
    print(title, '\n');
    std::fflush(stdout);
}

} // namespace

int main()
{
    for (const DWORD event : {EVENT_OBJECT_SHOW, EVENT_OBJECT_HIDE, EVENT_OBJECT_LOCATIONCHANGE}) {
        if (!SetWinEventHook(event, event, nullptr, tell, 0, 0, WINEVENT_OUTOFCONTEXT))
            return 1;
    }
    std::puts("watching");
    std::fflush(stdout);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}
