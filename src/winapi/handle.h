// Window handles as the program passes them around, and as Windows knows them (HWND). For src/winapi/*.cpp
// alone.
#pragma once

#include <QtGlobal>

namespace winapi {

template <typename Handle>
Handle toHandle(qlonglong window)
{
    return reinterpret_cast<Handle>(static_cast<qintptr>(window));
}

template <typename Handle>
qlonglong fromHandle(Handle window)
{
    return static_cast<qlonglong>(reinterpret_cast<qintptr>(window));
}

} // namespace winapi
