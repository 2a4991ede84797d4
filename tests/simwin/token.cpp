#include "state.h"

#include <cstring>

namespace simwin {

QByteArray administratorsSid()
{
    // Revision, number of sub-authorities, the NT authority (5, big-endian), 32 and 544 (little-endian).
    static const unsigned char sid[] = {1, 2, 0, 0, 0, 0, 0, 5, 32, 0, 0, 0, 0x20, 2, 0, 0};
    return QByteArray(reinterpret_cast<const char*>(sid), sizeof sid);
}

void setAdministrator(bool isAdministrator)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    if (isAdministrator)
        windows.groups.insert(administratorsSid());
    else
        windows.groups.remove(administratorsSid());
}

} // namespace simwin

using simwin::State;

BOOL WINAPI CreateWellKnownSid(WELL_KNOWN_SID_TYPE type, PSID domain, PSID sid, DWORD* size)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "CreateWellKnownSid", {QString::number(type), QString::number(*size)}))
        return FALSE;
    if (type != WinBuiltinAdministratorsSid || domain) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const QByteArray bytes = simwin::administratorsSid();
    const DWORD needed = static_cast<DWORD>(bytes.size());
    if (!sid || *size < needed) {
        *size = needed;
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    std::memcpy(sid, bytes.constData(), needed);
    *size = needed;
    return TRUE;
}

BOOL WINAPI CheckTokenMembership(HANDLE token, PSID sid, PBOOL isMember)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "CheckTokenMembership",
                       {token ? QStringLiteral("token") : QStringLiteral("null")})) {
        *isMember = TRUE; // nothing is promised about the result of a call that failed
        return FALSE;
    }
    const char* const bytes = static_cast<const char*>(sid);
    const int size = 8 + 4 * bytes[1];
    *isMember = windows.groups.contains(QByteArray(bytes, size)) ? TRUE : FALSE;
    return TRUE;
}
