// The part of the Windows SDK's <lm.h> that the program uses; see windows.h.
#pragma once

#include <windows.h>

using NET_API_STATUS = DWORD;

#define SIMWIN_CONSTANT(type, name, value) constexpr type name = static_cast<type>(value);
#include "lm_constants.def"
#undef SIMWIN_CONSTANT

extern "C" {
#define SIMWIN_FUNCTION(result, name, parameters) result WINAPI name parameters;
#include "lm_functions.def"
#undef SIMWIN_FUNCTION
}
