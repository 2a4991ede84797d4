// The part of the Windows SDK's <windows.h> that the program and its tests use, for builds against the
// simulated Windows: types, constants and functions under their own names and with their own sizes and
// values. tests/windows/tst_sdk.cpp holds every line of the .def files against the real SDK.
#pragma once

#include <cstddef>
#include <cstdint>

#define WINAPI
#define CALLBACK
#define CONST const

using BOOL = int;
using BYTE = unsigned char;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using LONG = std::int32_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;

using WCHAR = wchar_t;
static_assert(sizeof(WCHAR) == 2, "compile with -fshort-wchar: WCHAR has 16 bits on Windows");
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LPSTR = char*;
using LPCSTR = const char*;
using PBOOL = BOOL*;
using LPBOOL = BOOL*;
using LPDWORD = DWORD*;
using LPVOID = void*;
using PSID = void*;
using SIZE_T = std::size_t;
using ATOM = WORD;

using HANDLE = void*;
using HLOCAL = HANDLE;
using HINSTANCE = struct SimulatedInstance*;
using HWND = struct SimulatedWindow*;
using HMENU = struct SimulatedMenu*;
using WNDENUMPROC = BOOL (*)(HWND window, LPARAM context);

struct RECT
{
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

struct WINDOWINFO
{
    DWORD cbSize;
    RECT rcWindow;
    RECT rcClient;
    DWORD dwStyle;
    DWORD dwExStyle;
    DWORD dwWindowStatus;
    UINT cxWindowBorders;
    UINT cyWindowBorders;
    ATOM atomWindowType;
    WORD wCreatorVersion;
};
using PWINDOWINFO = WINDOWINFO*;

#define TRUE 1
#define FALSE 0

enum WELL_KNOWN_SID_TYPE : int;

#define SIMWIN_CONSTANT(type, name, value) constexpr type name = static_cast<type>(value);
#include "windows_constants.def"
#undef SIMWIN_CONSTANT

extern "C" {
#define SIMWIN_FUNCTION(result, name, parameters) result WINAPI name parameters;
#include "windows_functions.def"
#undef SIMWIN_FUNCTION
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previousInstance, LPSTR commandLine, int showCommand);
