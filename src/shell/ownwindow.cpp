#include "shell/ownwindow.h"

#include <QWidget>

namespace shell {

void setPageFlags(QWidget* page)
{
    constexpr Qt::WindowFlags::Int flags = Qt::CustomizeWindowHint | Qt::FramelessWindowHint;
    if (static_cast<Qt::WindowFlags::Int>(page->windowFlags() & ~Qt::WindowType_Mask) != flags)
        page->setWindowFlags(Qt::WindowFlags(flags));
}

} // namespace shell
