#pragma once

#include <Qt>

namespace shell {

// The title of every page, tool and bar of the shell: windows of this title are never attached to a task.
constexpr char ownWindowTitle[] = "quillet";

// The window flags of every page and tool.
const Qt::WindowFlags pageFlags = Qt::CustomizeWindowHint | Qt::FramelessWindowHint;

} // namespace shell
