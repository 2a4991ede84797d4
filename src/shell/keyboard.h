// What the shell's windows do for users of the keyboard beyond what Qt does.
#pragma once

class QDialog;
class QKeyEvent;
class QWidget;

namespace shell {

// Enter presses `widget`, if that is a button, once however long it is held. False for every other key. What
// the button does may end its window.
bool pressWithEnter(QWidget* widget, const QKeyEvent& event);

// Whether it is Enter once more, because it is held.
bool isHeldEnter(const QKeyEvent& event);

// From now on Enter and Escape that are held neither accept nor reject the dialog, nor press the buttons that
// it has by now: they were pressed for what was there before.
void ignoreHeldKeys(QDialog* dialog);

bool isArrowKey(const QKeyEvent& event);

// Whether the Tab key can lead to the widget.
bool isReachable(const QWidget* widget);

// What the Tab key leads to first in `window`; null when there is nothing.
QWidget* firstReachable(QWidget* window);

} // namespace shell
