#include "winapi/accounts.h"

#include <windows.h>

#include <lm.h>

namespace winapi {

namespace {

// Lives as long as `string`.
LPCWSTR wide(const QString& string)
{
    return reinterpret_cast<LPCWSTR>(string.utf16());
}

} // namespace

quint32 changePassword(const QString& oldPassword, const QString& newPassword)
{
    return NetUserChangePassword(nullptr, nullptr, wide(oldPassword), wide(newPassword));
}

PasswordChange passwordChange(quint32 result)
{
    switch (result) {
    case NERR_Success:
    case ERROR_INVALID_PARAMETER:
        return PasswordChange::Made;
    case ERROR_ACCESS_DENIED:
    case NERR_UserNotFound:
    case NERR_NotPrimary:
    case NERR_InvalidComputer:
        return PasswordChange::NotPermitted;
    case ERROR_INVALID_PASSWORD:
        return PasswordChange::WrongOldPassword;
    case NERR_PasswordTooShort:
        return PasswordChange::NewPasswordRefused;
    default:
        return PasswordChange::Failed;
    }
}

} // namespace winapi
