#pragma once

#include "shell/focusframe.h"

#include <QPushButton>

// An ordinary button in the style's look, but for the focus, which it shows as the shell's other buttons do.
// The arrow keys are left to its parents; Enter presses once, however long it is held. Belongs to its parent.
class PlainButton : public QPushButton
{
    Q_OBJECT

public:
    using QPushButton::QPushButton;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    FocusFrame m_focusFrame{this};
};
