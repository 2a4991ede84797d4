// The part of the Windows SDK's <wtsapi32.h> that the program uses; see windows.h.
#pragma once

#include <windows.h>

#define WTS_CURRENT_SERVER_HANDLE static_cast<HANDLE>(nullptr)

#define SIMWIN_CONSTANT(type, name, value) constexpr type name = static_cast<type>(value);
#include "wtsapi32_constants.def"
#undef SIMWIN_CONSTANT

extern "C" {
#define SIMWIN_FUNCTION(result, name, parameters) result WINAPI name parameters;
#include "wtsapi32_functions.def"
#undef SIMWIN_FUNCTION
}
