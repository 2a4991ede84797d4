#include "session/screensize.h"

#include <QApplication>
#include <QDesktopWidget>

namespace session {

QSize desktopSize()
{
    return QApplication::desktop()->size();
}

} // namespace session
