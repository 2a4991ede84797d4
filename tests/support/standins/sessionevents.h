#pragma once

#include <windows.h>

#include <wtsapi32.h>

#include <cwchar>

// The session events that a story can play, and how they come to the stand-in wtsapi32: each is a count in a
// semaphore with a name, so that none is lost while the one before is being told.
struct SessionEvent
{
    const wchar_t* name;
    DWORD flag;
};

constexpr SessionEvent sessionEvents[] = {{L"connect", WTS_EVENT_CONNECT},
                                          {L"disconnect", WTS_EVENT_DISCONNECT},
                                          {L"logon", WTS_EVENT_LOGON},
                                          {L"logoff", WTS_EVENT_LOGOFF}};
constexpr DWORD sessionEventCount = sizeof sessionEvents / sizeof *sessionEvents;

// The name of the event's semaphore. The buffer is the caller's, of MAX_PATH characters.
inline const wchar_t* semaphoreName(const SessionEvent& event, wchar_t* buffer)
{
    return std::wcscat(std::wcscpy(buffer, L"story-session-event-"), event.name);
}
