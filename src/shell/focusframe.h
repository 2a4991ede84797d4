#pragma once

#include <QObject>

class QFocusEvent;
class QPainter;
class QRect;
class QWidget;

// Shows users of the keyboard which widget has the focus; users of the mouse see no frame. It watches the
// widget, which is its parent and owns it, and looks the same everywhere; who paints the widget, or what is
// around it, draws it where nothing else is painted. GUI thread only.
class FocusFrame : public QObject
{
    Q_OBJECT

public:
    static constexpr int width = 2; // pixels

    // `painter` draws the frame, when it is not the widget itself.
    explicit FocusFrame(QWidget* widget, QWidget* painter = nullptr);

    // Whether the keyboard brought the focus that the widget has.
    bool isShown() const;
    // Along the inner edge of `outer`; nothing when it is not shown.
    void paint(QPainter* painter, const QRect& outer) const;

    // The focus goes to the widget as the keyboard brings it, even if its window is still to become active.
    static void giveFocus(QWidget* widget);
    // Whether the widget has a frame that is shown.
    static bool isShownOn(const QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* const m_widget;
    QWidget* const m_painter;
    bool m_byKeyboard = false;
};

namespace shell {

// Whether a frame is shown after an event, when it was before or would have been in an active window.
bool showsFocus(const QFocusEvent& event, bool before);

} // namespace shell
