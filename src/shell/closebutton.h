#pragma once

#include "shell/focusframe.h"

#include <QIcon>
#include <QPushButton>

// A small ordinary button under a picture that covers it, as the task panel has them to end a task. It leaves
// no room for a focus frame within itself: its parent draws one around it. Belongs to its parent.
class CloseButton : public QPushButton
{
    Q_OBJECT

public:
    // The picture says nothing to a screen reader: set an accessible name.
    explicit CloseButton(const QIcon& icon, QWidget* parent = nullptr);

    // For its parent's paintEvent(): around the button, when it has a frame.
    void paintFocusFrame(QPainter* painter) const;

signals:
    void closeButtonClicked(CloseButton* button);

protected:
    void paintEvent(QPaintEvent* event) override;
    // The arrow keys are left to its parents.
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void buttonClicked();

private:
    const QIcon m_icon;
    const FocusFrame m_focusFrame;
};
