// netapi32.dll
//
// Stands in for the library of this name while a story is played: Wine's own has no account whose password
// could be changed. It has what the shell and Qt use:
//
// NetUserChangePassword  appends a line to the file that PASSWORD_CHANGES names, see below, and gives the
//                        result whose decimal number is in the file that PASSWORD_RESULT names; 0 without one
// NetShareEnum           fails: there are no shares
// NetApiBufferFree       has nothing to free
//
// A line is domain, user, old and new password in UTF-8, separated by tabs; "\0" stands for a null pointer,
// and backslash, tab, line feed and carriage return are "\\", "\t", "\n" and "\r".
#include <windows.h>

#include <lm.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::FILE* open(const wchar_t* variable, const wchar_t* mode)
{
    const wchar_t* const path = _wgetenv(variable);
    return path ? _wfopen(path, mode) : nullptr;
}

std::string utf8(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, &bytes[0], size, nullptr, nullptr);
    bytes.pop_back(); // its own zero
    return bytes;
}

std::string escaped(const wchar_t* text)
{
    if (!text)
        return "\\0";
    std::string result;
    for (const char c : utf8(text)) {
        switch (c) {
        case '\\':
            result += "\\\\";
            break;
        case '\t':
            result += "\\t";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\r':
            result += "\\r";
            break;
        default:
            result += c;
        }
    }
    return result;
}

NET_API_STATUS plannedResult()
{
    unsigned long result = NERR_Success;
    if (std::FILE* const file = open(L"PASSWORD_RESULT", L"rb")) {
        if (std::fscanf(file, "%lu", &result) != 1)
            result = NERR_Success;
        std::fclose(file);
    }
    return result;
}

} // namespace

extern "C" {

__declspec(dllexport) NET_API_STATUS WINAPI
    NetUserChangePassword(LPCWSTR domain, LPCWSTR user, LPCWSTR oldPassword, LPCWSTR newPassword)
{
    if (std::FILE* const file = open(L"PASSWORD_CHANGES", L"ab")) {
        const std::string line = escaped(domain) + '\t' + escaped(user) + '\t' + escaped(oldPassword) + '\t' +
                                 escaped(newPassword) + '\n';
        std::fwrite(line.data(), 1, line.size(), file);
        std::fclose(file);
    }
    return plannedResult();
}

__declspec(dllexport) NET_API_STATUS WINAPI
    NetShareEnum(LMSTR, DWORD, LPBYTE* buffer, DWORD, LPDWORD read, LPDWORD total, LPDWORD)
{
    *buffer = nullptr;
    *read = 0;
    *total = 0;
    return ERROR_NOT_SUPPORTED;
}

__declspec(dllexport) NET_API_STATUS WINAPI NetApiBufferFree(LPVOID)
{
    return NERR_Success;
}

} // extern "C"
