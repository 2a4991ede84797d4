#pragma once

class QFocusEvent;
class QPainter;
class QPalette;
class QRect;

// Shows users of the keyboard where they are. Users of the mouse see no frame.
namespace shell {

// Whether the keyboard brought this focus.
bool isKeyboardFocus(const QFocusEvent& event);

// Draws along the inner edge of `outer`, 2 pixels wide, in the palette's highlight colour.
void drawFocusFrame(QPainter* painter, const QRect& outer, const QPalette& palette);

} // namespace shell
