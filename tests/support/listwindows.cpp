// listwindows
//
// Prints one line for every visible top-level window, the foremost first: the program that it belongs to, its
// class and its title, separated by tabs, in UTF-8. The last line is "end".
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

void print(const std::wstring& text, char end)
{
    char bytes[2048];
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr);
    std::printf("%s%c", size > 0 ? bytes : "?", end);
}

std::wstring programOf(HWND window)
{
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id);
    wchar_t path[MAX_PATH] = L"?";
    DWORD length = MAX_PATH;
    if (process) {
        QueryFullProcessImageNameW(process, 0, path, &length);
        CloseHandle(process);
    }
    const std::wstring whole = path;
    return whole.substr(whole.find_last_of(L'\\') + 1);
}

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
    print(title, '\n');
    return TRUE;
}

} // namespace

int main()
{
    if (!EnumWindows(visit, 0))
        return 1;
    std::puts("end");
}
