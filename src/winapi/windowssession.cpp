#include "winapi/windowssession.h"

#include <windows.h>

#include <wtsapi32.h>

namespace winapi {

void logOff()
{
    ExitWindowsEx(EWX_LOGOFF, 0xFFFFFFFF);
}

void disconnect()
{
    WTSDisconnectSession(WTS_CURRENT_SERVER_HANDLE, WTS_CURRENT_SESSION, FALSE);
}

} // namespace winapi
