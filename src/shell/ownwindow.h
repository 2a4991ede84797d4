#pragma once

namespace shell {

// The title of every page, tool and bar of the shell: windows of this title are never attached to a task.
constexpr char ownWindowTitle[] = "quillet";

} // namespace shell
