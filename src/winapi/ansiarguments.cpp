#include "winapi/ansiarguments.h"

#include <windows.h>

#include <shellapi.h>

#include <memory>

namespace winapi {

namespace {

struct LocalFreeDeleter
{
    void operator()(LPWSTR* array) const { LocalFree(array); }
};

std::vector<char> toAnsi(const wchar_t* wide)
{
    const int size = WideCharToMultiByte(CP_ACP, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    if (size < 1)
        return {'\0'};
    std::vector<char> ansi(static_cast<size_t>(size));
    if (WideCharToMultiByte(CP_ACP, 0, wide, -1, ansi.data(), size, nullptr, nullptr) == 0)
        return {'\0'};
    return ansi;
}

} // namespace

std::optional<AnsiArguments> AnsiArguments::ofThisProcess()
{
    int count = 0;
    const std::unique_ptr<LPWSTR[], LocalFreeDeleter> wide(CommandLineToArgvW(GetCommandLineW(), &count));
    if (!wide)
        return std::nullopt;

    AnsiArguments arguments;
    for (int i = 0; i < count; ++i)
        arguments.m_strings.push_back(toAnsi(wide[static_cast<size_t>(i)]));
    for (std::vector<char>& string : arguments.m_strings)
        arguments.m_pointers.push_back(string.data());
    arguments.m_pointers.push_back(nullptr);
    return arguments;
}

int AnsiArguments::count() const
{
    return static_cast<int>(m_strings.size());
}

char** AnsiArguments::data()
{
    return m_pointers.data();
}

} // namespace winapi
