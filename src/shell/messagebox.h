// The shell's message boxes.
#pragma once

#include <QMessageBox>

namespace shell {

// Shows a modal box and waits for the answer, as QMessageBox's own functions do. Two things are different:
// keys that are held do not answer it, see ignoreHeldKeys(), and the parent, which may be null, may go
// meanwhile: the box goes with it and the answer is NoButton. `preset` is what Enter presses; none leaves
// that to the buttons' roles. Blocks and processes events: whatever the caller knew may have changed. GUI
// thread only.
QMessageBox::StandardButton showBox(QWidget* parent, QMessageBox::Icon icon, const QString& title,
                                    const QString& text,
                                    QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                    QMessageBox::StandardButton preset = QMessageBox::NoButton);

} // namespace shell
