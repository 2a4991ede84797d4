#include "shell/plainbutton.h"

#include "shell/keyboard.h"

#include <QKeyEvent>
#include <QStyleOptionButton>
#include <QStylePainter>

void PlainButton::paintEvent(QPaintEvent* /*event*/)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.state &= ~QStyle::State_HasFocus;
    painter.drawControl(QStyle::CE_PushButton, option);
    m_focusFrame.paint(&painter, rect().adjusted(1, 1, -1, -1));
}

void PlainButton::keyPressEvent(QKeyEvent* event)
{
    if (shell::isArrowKey(*event))
        event->ignore();
    else if (!shell::isHeldEnter(*event)) // which a dialog's buttons would be pressed with again
        QPushButton::keyPressEvent(event);
}
