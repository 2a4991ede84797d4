#include "session/busycursor.h"

#include <QApplication>
#include <QDesktopWidget>

namespace session {

namespace {

template <typename Change>
void changeOwnWindows(Change change)
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* const widget : widgets) {
        if (widget->windowType() != Qt::Desktop)
            change(widget);
    }
}

} // namespace

bool isBusy()
{
    return QApplication::desktop()->cursor().shape() == Qt::WaitCursor;
}

void showBusy()
{
    QApplication::desktop()->setCursor(Qt::WaitCursor);
    changeOwnWindows([](QWidget* window) { window->setCursor(Qt::WaitCursor); });
}

void showReady()
{
    if (!isBusy())
        return;
    QApplication::desktop()->setCursor(Qt::ArrowCursor);
    changeOwnWindows([](QWidget* window) { window->unsetCursor(); });
}

} // namespace session
