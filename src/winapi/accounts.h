#pragma once

#include <QString>

namespace winapi {

// Changes the password of the caller's account on its logon domain and returns Windows' result code. Blocks
// for as long as the domain does. The passwords go to Windows as they are.
quint32 changePassword(const QString& oldPassword, const QString& newPassword);

enum class PasswordChange
{
    Made,
    NotPermitted, // to this user, on this machine
    WrongOldPassword,
    NewPasswordRefused, // too short, or used before
    Failed              // for any other reason
};

// What a result of changePassword() means. Wanted: ERROR_INVALID_PARAMETER stands for a change that was made.
PasswordChange passwordChange(quint32 result);

} // namespace winapi
