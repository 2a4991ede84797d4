// probe [ARGUMENT...]
//
// A program to be started: it tells what it was started with. What it does is said by the environment, since
// the arguments belong to whoever tries it:
//
//   PROBE_REPORT=FILE   gets the report when it is complete: fields ended by a zero byte, "folder=", the
//   current
//                       directory, "argument=" for each, "variable=NAME=VALUE" for each; UTF-8
//   PROBE_EXIT=CODE     ends with this exit code instead of 0
//   PROBE_STAY=1        never ends
//
// Nothing but the C++ library and the system are needed, so that it can be copied anywhere.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace {

struct Report
{
    std::string folder;
    std::vector<std::string> arguments;
    std::vector<std::string> variables;
};

bool write(const Report& report, const std::string& path)
{
    const std::string unfinished = path + ".unfinished";
    std::FILE* const file = std::fopen(unfinished.c_str(), "wb");
    if (!file)
        return false;
    const auto field = [file](const char* name, const std::string& value) {
        std::fputs(name, file);
        std::fwrite(value.data(), 1, value.size() + 1, file);
    };
    field("folder=", report.folder);
    for (const std::string& argument : report.arguments)
        field("argument=", argument);
    for (const std::string& variable : report.variables)
        field("variable=", variable);
    const bool written = !std::ferror(file);
    return std::fclose(file) == 0 && written && std::rename(unfinished.c_str(), path.c_str()) == 0;
}

int run(const Report& report)
{
    const char* const path = std::getenv("PROBE_REPORT");
    if (path && !write(report, path))
        return 125;
    if (std::getenv("PROBE_STAY"))
        std::this_thread::sleep_for(std::chrono::minutes(5));
    const char* const code = std::getenv("PROBE_EXIT");
    return code ? std::atoi(code) : 0;
}

#ifdef _WIN32
std::string utf8(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, &bytes[0], size, nullptr, nullptr);
    bytes.resize(bytes.size() - 1);
    return bytes;
}
#endif

} // namespace

#ifdef _WIN32
int wmain(int argc, wchar_t** argv)
{
    Report report;
    wchar_t folder[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, folder);
    report.folder = utf8(folder);
    for (int i = 1; i < argc; ++i)
        report.arguments.push_back(utf8(argv[i]));
    wchar_t* const block = GetEnvironmentStringsW();
    for (const wchar_t* at = block; *at; at += std::wstring(at).size() + 1)
        report.variables.push_back(utf8(at));
    FreeEnvironmentStringsW(block);
    return run(report);
}
#else
int main(int argc, char** argv)
{
    Report report;
    char folder[4096] = {};
    if (getcwd(folder, sizeof folder))
        report.folder = folder;
    for (int i = 1; i < argc; ++i)
        report.arguments.push_back(argv[i]);
    for (char** at = environ; *at; ++at)
        report.variables.push_back(*at);
    return run(report);
}
#endif
