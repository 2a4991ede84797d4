#pragma once

class QRect;

namespace winapi {

// See WinManager::resize().
void setWorkArea(const QRect& rect);

} // namespace winapi
