// The part of the Windows SDK's <shellapi.h> that the program uses; see windows.h.
#pragma once

#include <windows.h>

extern "C" {
#define SIMWIN_FUNCTION(result, name, parameters) result WINAPI name parameters;
#include "shellapi_functions.def"
#undef SIMWIN_FUNCTION
}
