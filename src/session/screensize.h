#pragma once

#include <QSize>

namespace session {

// The size of the whole desktop, in pixels.
QSize desktopSize();

} // namespace session
