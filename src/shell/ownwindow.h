#pragma once

class QWidget;

namespace shell {

// The title of every page, tool and bar of the shell: windows of this title are never attached to a task.
constexpr char ownWindowTitle[] = "quillet";

// Gives a page or tool its window flags. To be called before its native window exists; nothing happens when
// it has them, because setting flags always hides the window.
void setPageFlags(QWidget* page);

} // namespace shell
