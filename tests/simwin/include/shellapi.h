// The part of the Windows SDK's <shellapi.h> that the program uses; see windows.h.
#pragma once

#include <windows.h>

struct APPBARDATA
{
    DWORD cbSize;
    HWND hWnd;
    UINT uCallbackMessage;
    UINT uEdge;
    RECT rc;
    LPARAM lParam;
};
using PAPPBARDATA = APPBARDATA*;

#define SIMWIN_CONSTANT(type, name, value) constexpr type name = static_cast<type>(value);
#include "shellapi_constants.def"
#undef SIMWIN_CONSTANT

extern "C" {
#define SIMWIN_FUNCTION(result, name, parameters) result WINAPI name parameters;
#include "shellapi_functions.def"
#undef SIMWIN_FUNCTION
}
