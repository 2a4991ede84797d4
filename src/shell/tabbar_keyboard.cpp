// How the keyboard goes through the task bar, to it and away from it.
#include "shell/focusframe.h"
#include "shell/keyboard.h"
#include "shell/tabbar.h"
#include "shell/threadbutton.h"
#include "shell/threadwidget.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QShortcut>

#include <utility>

void TabBar::orderButtons()
{
    QWidget* previous = nullptr;
    const auto append = [&previous](QWidget* widget) {
        if (previous)
            setTabOrder(previous, widget);
        previous = widget;
    };
    for (ThreadButton* const button : std::as_const(m_buttons))
        append(button);
    append(m_panel->findChild<QPushButton*>());
    append(m_leftArrow);
    append(m_rightArrow); // the tasks come between the arrows
    append(m_rightLayout->itemAt(0)->widget());
}

void TabBar::addSwitchKey(QWidget* window)
{
    auto* const key = new QShortcut(QKeySequence(Qt::Key_F6), window);
    connect(key, &QShortcut::activated, this, [this, window] {
        if (window == this)
            handKeyboardOver();
        else
            takeKeyboard();
    });
}

void TabBar::takeKeyboard()
{
    activateWindow();
    if (QWidget* const target = heir())
        FocusFrame::giveFocus(target);
}

void TabBar::handKeyboardOver()
{
    ThreadButton* const current = currentButton();
    if (!current)
        return;
    QWidget* const page = current->widget();
    if (!page) {
        current->click();
        return;
    }
    page->show();
    page->activateWindow();
    QWidget* target = page->focusWidget();
    if (!target || !shell::isReachable(target))
        target = shell::firstReachable(page);
    FocusFrame::giveFocus(target ? target : page);
}

QWidget* TabBar::heir() const
{
    ThreadButton* const current = currentButton();
    if (current && shell::isReachable(current))
        return current;
    return m_buttons.value(0);
}

bool TabBar::focusNextPrevChild(bool next)
{
    const QWidget* const focused = focusWidget();
    if (!focused || focused == this || shell::isReachable(focused))
        return QWidget::focusNextPrevChild(next);
    // Not the user moves on: the button cannot keep the focus.
    QWidget* target = heir();
    for (QPushButton* const arrow : {m_leftArrow, m_rightArrow}) {
        const QPushButton* const other = arrow == m_leftArrow ? m_rightArrow : m_leftArrow;
        if (focused == other && shell::isReachable(arrow))
            target = arrow;
    }
    if (!target)
        return false;
    if (FocusFrame::isShownOn(focused))
        FocusFrame::giveFocus(target);
    else
        target->setFocus(Qt::OtherFocusReason);
    return true;
}

void TabBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)
        focusNextPrevChild(event->key() == Qt::Key_Right);
    else if (!shell::pressWithEnter(focusWidget(), *event))
        QWidget::keyPressEvent(event);
}
