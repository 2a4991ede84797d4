#include "winapi/sessionmanager.h"

#include <windows.h>

#include <wtsapi32.h>

SessionManager::SessionManager() = default;

SessionManager::~SessionManager() = default;

void SessionManager::run()
{
    for (;;) {
        DWORD events = 0;
        if (WTSWaitSystemEvent(WTS_CURRENT_SERVER_HANDLE, WTS_EVENT_ALL, &events) &&
            (events & WTS_EVENT_CONNECT))
            emit clientConnectEvent();
    }
}
