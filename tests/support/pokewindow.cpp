// pokewindow HANDLE ACTION [TITLE]
//
// Does something to the window with this handle (a decimal number), as one program may do to another's:
// title, minimise, maximise, restore, hide, show, close, quit. Exit code 0 when the window is there.
#include <windows.h>

#include <cwchar>
#include <string>

int wmain(int argc, wchar_t** argv)
{
    if (argc < 3)
        return 2;
    const auto window = reinterpret_cast<HWND>(static_cast<LONG_PTR>(std::wcstoll(argv[1], nullptr, 10)));
    const std::wstring action = argv[2];
    if (!IsWindow(window))
        return 1;
    if (action == L"title")
        SetWindowTextW(window, argc > 3 ? argv[3] : L"");
    else if (action == L"minimise")
        ShowWindow(window, SW_MINIMIZE);
    else if (action == L"maximise")
        ShowWindow(window, SW_MAXIMIZE);
    else if (action == L"restore")
        ShowWindow(window, SW_RESTORE);
    else if (action == L"hide")
        ShowWindow(window, SW_HIDE);
    else if (action == L"show")
        ShowWindow(window, SW_SHOW);
    else if (action == L"close")
        PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    else if (action == L"quit")
        PostMessageW(window, WM_QUIT, 0, 0);
    else
        return 2;
    return 0;
}
