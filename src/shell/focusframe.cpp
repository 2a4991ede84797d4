#include "shell/focusframe.h"

#include <QFocusEvent>
#include <QPainter>

namespace shell {

bool isKeyboardFocus(const QFocusEvent& event)
{
    switch (event.reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        return event.gotFocus();
    default:
        return false;
    }
}

void drawFocusFrame(QPainter* painter, const QRect& outer, const QColor& color)
{
    painter->save();
    painter->setOpacity(1.0);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(color);
    for (int i = 0; i < 2; ++i)
        painter->drawRect(
            outer.adjusted(i, i, -i - 1, -i - 1)); // the pen adds a pixel on the right and below
    painter->restore();
}

} // namespace shell
