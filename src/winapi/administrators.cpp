#include "winapi/administrators.h"

#include <windows.h>

namespace winapi {

bool userIsAdministrator()
{
    BYTE administrators[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof administrators;
    BOOL isMember = FALSE;
    if (CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size)) {
        if (!CheckTokenMembership(nullptr, administrators, &isMember))
            isMember = FALSE;
    }
    return isMember != FALSE;
}

} // namespace winapi
