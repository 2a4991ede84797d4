// pokesession EVENT [TIMES]
//
// Plays a session event (connect, disconnect, logon, logoff), so many times at once, to the program that
// waits for such events with the stand-in wtsapi32. Exit code 1 when no program has waited yet.
#include "standins/sessionevents.h"

#include <cwchar>
#include <string>

int wmain(int argc, wchar_t** argv)
{
    for (const SessionEvent& event : sessionEvents) {
        if (argc < 2 || std::wstring(argv[1]) != event.name)
            continue;
        wchar_t name[MAX_PATH];
        const HANDLE semaphore = OpenSemaphoreW(SEMAPHORE_MODIFY_STATE, FALSE, semaphoreName(event, name));
        if (!semaphore)
            return 1;
        const long times = argc > 2 ? std::wcstol(argv[2], nullptr, 10) : 1;
        const BOOL released = ReleaseSemaphore(semaphore, times, nullptr);
        CloseHandle(semaphore);
        return released ? 0 : 1;
    }
    return 2;
}
