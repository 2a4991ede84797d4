#pragma once

class QColor;
class QFocusEvent;
class QPainter;
class QRect;

// Shows users of the keyboard where they are. Users of the mouse see no frame.
namespace shell {

// Whether the keyboard brought this focus.
bool isKeyboardFocus(const QFocusEvent& event);

// Draws along the inner edge of `outer`, 2 pixels wide.
void drawFocusFrame(QPainter* painter, const QRect& outer, const QColor& color);

} // namespace shell
