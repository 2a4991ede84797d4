#pragma once

#include <optional>
#include <vector>

namespace winapi {

// The process's command line as an argument vector in the ANSI code page. Owns the strings and the array, as
// long as it lives; moving it keeps the pointers valid.
class AnsiArguments
{
public:
    // Splits the command line by the rules of Windows; nothing when Windows cannot.
    static std::optional<AnsiArguments> ofThisProcess();

    int count() const;
    // count() strings and a null pointer.
    char** data();

private:
    std::vector<std::vector<char>> m_strings; // each with its terminating zero
    std::vector<char*> m_pointers;
};

} // namespace winapi
