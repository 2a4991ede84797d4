// The user's account.
#include "state.h"

#include <lm.h>

using simwin::State;

namespace simwin {

QString accountPassword()
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    return windows.accountPassword;
}

void setAccountPassword(const QString& password)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.accountPassword = password;
}

} // namespace simwin

NET_API_STATUS WINAPI NetUserChangePassword(LPCWSTR domain, LPCWSTR user, LPCWSTR oldPassword,
                                            LPCWSTR newPassword)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    const auto text = [](LPCWSTR string) {
        return string ? QString::fromWCharArray(string) : QStringLiteral("(null)");
    };
    if (!simwin::enter(windows, "NetUserChangePassword",
                       {text(domain), text(user), text(oldPassword), text(newPassword)}))
        return GetLastError();
    if (!oldPassword || !newPassword)
        return ERROR_INVALID_PARAMETER;
    if (domain || user)
        return NERR_UserNotFound; // there is one account, the caller's
    if (text(oldPassword) != windows.accountPassword)
        return ERROR_INVALID_PASSWORD;
    windows.accountPassword = text(newPassword);
    return NERR_Success;
}
