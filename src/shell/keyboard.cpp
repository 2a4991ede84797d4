#include "shell/keyboard.h"

#include <QAbstractButton>
#include <QDialog>
#include <QKeyEvent>

namespace shell {

namespace {

class HeldKeys : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress) {
            const auto& key = *static_cast<QKeyEvent*>(event);
            if (isHeldEnter(key) || (key.isAutoRepeat() && key.key() == Qt::Key_Escape))
                return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

bool pressWithEnter(QWidget* widget, const QKeyEvent& event)
{
    if (event.key() != Qt::Key_Enter && event.key() != Qt::Key_Return)
        return false;
    auto* const button = qobject_cast<QAbstractButton*>(widget);
    if (button && !event.isAutoRepeat())
        button->click();
    return true;
}

bool isHeldEnter(const QKeyEvent& event)
{
    return event.isAutoRepeat() && (event.key() == Qt::Key_Enter || event.key() == Qt::Key_Return);
}

void ignoreHeldKeys(QDialog* dialog)
{
    auto* const filter = new HeldKeys(dialog);
    dialog->installEventFilter(filter);
    const auto buttons = dialog->findChildren<QAbstractButton*>();
    for (QAbstractButton* const button : buttons)
        button->installEventFilter(filter);
}

bool isArrowKey(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return true;
    default:
        return false;
    }
}

bool isReachable(const QWidget* widget)
{
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus);
}

QWidget* firstReachable(QWidget* window)
{
    for (QWidget* widget = window->nextInFocusChain(); widget != window;
         widget = widget->nextInFocusChain()) {
        if (isReachable(widget) && window->isAncestorOf(widget))
            return widget;
    }
    return nullptr;
}

} // namespace shell
