// The part of the Windows SDK's <winnetwk.h> that the program uses; see windows.h.
#pragma once

#include <windows.h>

struct NETRESOURCEW
{
    DWORD dwScope;
    DWORD dwType;
    DWORD dwDisplayType;
    DWORD dwUsage;
    LPWSTR lpLocalName;
    LPWSTR lpRemoteName;
    LPWSTR lpComment;
    LPWSTR lpProvider;
};
using LPNETRESOURCEW = NETRESOURCEW*;
using LPHANDLE = HANDLE*;

#define SIMWIN_CONSTANT(type, name, value) constexpr type name = static_cast<type>(value);
#include "winnetwk_constants.def"
#undef SIMWIN_CONSTANT

extern "C" {
#define SIMWIN_FUNCTION(result, name, parameters) result WINAPI name parameters;
#include "winnetwk_functions.def"
#undef SIMWIN_FUNCTION
}
