// asuser PROGRAM [ARGUMENT...]
//
// Runs PROGRAM as the current user without the rights of the Administrators group, as on a server where only
// administrators have them; the default user under Wine is one. Ends when PROGRAM does, with its exit code;
// 125 when PROGRAM could not be started.
//
// This program has a window that nobody sees, for two reasons:
//
// - When the user is logged off, Windows ends every program of the session, Wine only those with a window.
// This
//   one ends PROGRAM then, with exit code 99.
// - It stands in for the system's task bar, above Wine's own: that opens a menu when it is told that the work
//   area has changed, and the sender waits until somebody closes the menu. This one answers at once; each
//   command that it gets is appended as a line "command NUMBER" to the file that ASUSER_COMMANDS names.
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

int fail(const char* what)
{
    std::fprintf(stderr, "asuser: %s failed with %lu\n", what, GetLastError());
    return 125;
}

// The command line behind this program's own name.
std::wstring restOfCommandLine()
{
    const wchar_t* at = GetCommandLineW();
    const wchar_t end = *at == L'"' ? *at++ : L' ';
    while (*at && *at != end)
        ++at;
    if (*at == L'"')
        ++at;
    while (*at == L' ')
        ++at;
    return at;
}

constexpr UINT loggedOff = 99; // exit code of a PROGRAM that a log-off ended

HANDLE g_process = nullptr; // PROGRAM

void record(WPARAM command)
{
    const wchar_t* const path = _wgetenv(L"ASUSER_COMMANDS");
    std::FILE* const file = path ? _wfopen(path, L"ab") : nullptr;
    if (!file)
        return;
    std::fprintf(file, "command %llu\n", static_cast<unsigned long long>(command));
    std::fclose(file);
}

LRESULT CALLBACK handleMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_ENDSESSION && wParam) {
        TerminateProcess(g_process, loggedOff);
        ExitProcess(loggedOff); // before Wine ends this program in its own way
    }
    if (message == WM_COMMAND) {
        record(wParam);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// False when another window of the class would be found before ours.
bool createWindow()
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = handleMessage;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"Shell_TrayWnd";
    RegisterClassW(&windowClass);
    const HWND window =
        CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_TOPMOST, windowClass.lpszClassName, L"", WS_POPUP, 0, 0, 0,
                        0, nullptr, nullptr, windowClass.hInstance, nullptr);
    return window && FindWindowW(windowClass.lpszClassName, nullptr) == window;
}

void waitFor(HANDLE process)
{
    g_process = process;
    while (MsgWaitForMultipleObjects(1, &process, FALSE, INFINITE, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }
}

} // namespace

int main()
{
    std::wstring command = restOfCommandLine();
    if (command.empty()) {
        std::fprintf(stderr, "usage: asuser PROGRAM [ARGUMENT...]\n");
        return 125;
    }

    BYTE sid[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof sid;
    HANDLE own = nullptr;
    HANDLE restricted = nullptr;
    if (!CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, sid, &size))
        return fail("CreateWellKnownSid");
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &own))
        return fail("OpenProcessToken");
    SID_AND_ATTRIBUTES disabled = {sid, 0};
    if (!CreateRestrictedToken(own, 0, 1, &disabled, 0, nullptr, 0, nullptr, &restricted))
        return fail("CreateRestrictedToken");

    if (!createWindow())
        return fail("The window");

    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE})
        SetHandleInformation(GetStdHandle(stream), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process = {};
    if (!CreateProcessAsUserW(restricted, nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                              nullptr, &startup, &process))
        return fail("CreateProcessAsUserW");
    waitFor(process.hProcess);
    DWORD exitCode = 125;
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    CloseHandle(restricted);
    CloseHandle(own);
    return static_cast<int>(exitCode);
}
