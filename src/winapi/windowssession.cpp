#include "winapi/windowssession.h"

#include <windows.h>

namespace winapi {

void logOff()
{
    ExitWindowsEx(EWX_LOGOFF, 0xFFFFFFFF);
}

} // namespace winapi
