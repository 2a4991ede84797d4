// quillet-session: what the shell value of a session names. That cannot give the shell a current directory,
// where the shell looks for its translation; this program makes its own folder the current directory, starts
// quillet.exe from there and ends when that does, with its exit code: where Windows takes the first program's
// end for the session's, it is the shell's.
//
// Its arguments go on to the shell. When the shell does not start, a box says why; nobody gets another
// desktop instead.
#include <windows.h>

#include <string>

namespace {

constexpr int couldNotStart = 125;

// With the backslash at its end, without which a drive's root would be whatever is current on that drive.
std::wstring ownFolder()
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, &path[0], static_cast<DWORD>(path.size()));
        if (length == 0)
            return std::wstring();
        if (length < path.size()) {
            path.resize(length);
            return path.substr(0, path.find_last_of(L'\\') + 1);
        }
        path.resize(path.size() * 2);
    }
}

int fail(const std::wstring& program, DWORD error)
{
    wchar_t* reason = nullptr;
    FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                       FORMAT_MESSAGE_IGNORE_INSERTS,
                   nullptr, error, 0, reinterpret_cast<wchar_t*>(&reason), 0, nullptr);
    std::wstring text = program + L"\n\nError " + std::to_wstring(error);
    if (reason)
        text += std::wstring(L": ") + reason;
    LocalFree(reason);
    MessageBoxW(nullptr, text.c_str(), L"Quillet", MB_OK | MB_ICONERROR | MB_SYSTEMMODAL);
    return couldNotStart;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR arguments, int)
{
    const std::wstring folder = ownFolder();
    const std::wstring program = folder + L"quillet.exe";
    std::wstring commandLine = L'"' + program + L"\" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!SetCurrentDirectoryW(folder.c_str()) ||
        !CreateProcessW(program.c_str(), &commandLine[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process))
        return fail(program, GetLastError());
    CloseHandle(process.hThread);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = couldNotStart;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hProcess);
    return static_cast<int>(code);
}
