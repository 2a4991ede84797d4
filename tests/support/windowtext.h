// What programs that tell of windows print.
#pragma once

#include <windows.h>

#include <cstdio>
#include <string>

// In UTF-8, with a character behind it.
inline void print(const std::wstring& text, char end)
{
    char bytes[2048];
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr);
    std::printf("%s%c", size > 0 ? bytes : "?", end);
}

// The file name of the program that a window belongs to, "?" when it cannot be asked.
inline std::wstring programOf(HWND window)
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
