// Window handles as the program passes them around, and as Windows knows them. For src/winapi/*.cpp alone.
#pragma once

#include <windows.h>

#include <QtGlobal>

namespace winapi {

inline HWND toHandle(qlonglong window)
{
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(window));
}

inline qlonglong fromHandle(HWND window)
{
    return static_cast<qlonglong>(reinterpret_cast<LONG_PTR>(window));
}

} // namespace winapi
