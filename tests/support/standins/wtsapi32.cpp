// wtsapi32.dll
//
// Stands in for the library of this name while a story is played: Wine's own cannot wait for session events
// (its function fails at once, and whoever asks again never rests). It has what the shell and Qt use:
//
// WTSWaitSystemEvent           blocks until `pokesession` plays an event that the mask asks for; one event a
// call WTSDisconnectSession         succeeds, and is appended as a line to the file that WTS_DISCONNECTIONS
// names WTSQuerySessionInformationW  fails, as Wine's does for what Qt asks (whether the session is locked)
#include "sessionevents.h"

#include <cstdio>

namespace {

// Created by the first wait, on the one thread that waits; they go when the process ends.
const HANDLE* semaphores()
{
    static HANDLE handles[sessionEventCount] = {};
    wchar_t name[MAX_PATH];
    for (DWORD i = 0; i < sessionEventCount && !handles[i]; ++i)
        handles[i] = CreateSemaphoreW(nullptr, 0, 1000, semaphoreName(sessionEvents[i], name));
    return handles;
}

} // namespace

extern "C" {

__declspec(dllexport) BOOL WINAPI WTSWaitSystemEvent(HANDLE, DWORD mask, DWORD* events)
{
    for (;;) {
        const DWORD signalled =
            WaitForMultipleObjects(sessionEventCount, semaphores(), FALSE, INFINITE) - WAIT_OBJECT_0;
        if (signalled >= sessionEventCount)
            return FALSE;
        if (sessionEvents[signalled].flag & mask) {
            *events = sessionEvents[signalled].flag;
            return TRUE;
        }
    }
}

__declspec(dllexport) BOOL WINAPI WTSDisconnectSession(HANDLE server, DWORD session, BOOL wait)
{
    const wchar_t* const path = _wgetenv(L"WTS_DISCONNECTIONS");
    std::FILE* const file = path ? _wfopen(path, L"ab") : nullptr;
    if (file) {
        std::fprintf(file, "server %lld, session %ld, wait %d\n",
                     static_cast<long long>(reinterpret_cast<LONG_PTR>(server)), static_cast<long>(session),
                     wait);
        std::fclose(file);
    }
    return TRUE;
}

__declspec(dllexport) BOOL WINAPI
    WTSQuerySessionInformationW(HANDLE, DWORD, WTS_INFO_CLASS, LPWSTR*, DWORD* size)
{
    *size = 0;
    return FALSE;
}

__declspec(dllexport) void WINAPI WTSFreeMemory(void*) {} // nothing was ever given out

} // extern "C"
