#include "shell/focusframe.h"

#include <QFocusEvent>
#include <QPainter>
#include <QWidget>

namespace {
constexpr QRgb frameColor = 0x12566B;
} // namespace

namespace shell {

bool showsFocus(const QFocusEvent& event, bool before)
{
    switch (event.reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        return event.gotFocus();
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason:
        return before; // the window or a menu gives back what it took
    default:
        return false;
    }
}

} // namespace shell

FocusFrame::FocusFrame(QWidget* widget, QWidget* painter)
    : QObject(widget)
    , m_widget(widget)
    , m_painter(painter ? painter : widget)
{
    widget->installEventFilter(this);
}

bool FocusFrame::isShown() const
{
    return m_byKeyboard && m_widget->hasFocus();
}

void FocusFrame::paint(QPainter* painter, const QRect& outer) const
{
    if (!isShown())
        return;
    painter->save();
    painter->setOpacity(1.0);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QColor(frameColor));
    for (int i = 0; i < width; ++i)
        painter->drawRect(outer.adjusted(i, i, -i - 1, -i - 1)); // the pen adds a pixel right and below
    painter->restore();
}

void FocusFrame::giveFocus(QWidget* widget)
{
    widget->setFocus(Qt::ShortcutFocusReason);
    // A window that becomes active later tells another reason.
    if (auto* const frame = widget->findChild<FocusFrame*>(QString(), Qt::FindDirectChildrenOnly)) {
        frame->m_byKeyboard = true;
        frame->m_painter->update();
    }
}

bool FocusFrame::isShownOn(const QWidget* widget)
{
    const auto* const frame = widget->findChild<FocusFrame*>(QString(), Qt::FindDirectChildrenOnly);
    return frame && frame->isShown();
}

bool FocusFrame::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        m_byKeyboard = shell::showsFocus(*static_cast<QFocusEvent*>(event), m_byKeyboard);
        m_painter->update();
    }
    return QObject::eventFilter(watched, event);
}
