#include "config/configure.h"

#include "config/configurationdialog.h"
#include "config/mimeconfig.h"
#include "session/userconfig.h"
#include "shell/appbutton.h"
#include "shell/focusframe.h"

#include <QKeyEvent>
#include <QPointer>

#include <utility>

void Configure::setUp()
{
    buildGrid();
    addTool(new MimeConfig(this));
    addTool(new UserConfig(this));
}

void Configure::addTool(ConfigurationDialog* tool)
{
    QWidget* const widget = tool->widget();
    auto* const button = new AppButton(tool->icon(), tool->name(), widget, this);
    button->setFlat(true);
    connect(button, SIGNAL(appButtonClicked(QWidget*)), this, SLOT(launchConfigurationApplication(QWidget*)));
    place(button);
    widget->hide();
    widget->installEventFilter(this);
    m_tools.append({widget, button});
}

void Configure::launchConfigurationApplication(QWidget* widget)
{
    emit selectWidget(widget, true);
}

// --- The tool in view

QWidget* Configure::toolInView() const
{
    // The last child is the one on top.
    for (auto child = children().crbegin(); child != children().crend(); ++child) {
        for (const Tool& tool : m_tools) {
            if (tool.widget == *child && !tool.widget->isHidden())
                return tool.widget;
        }
    }
    return nullptr;
}

bool Configure::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)
        letButtonsHaveFocus();
    if (event->type() == QEvent::KeyPress) {
        giveKey(watched, event); // this filter is the last that sees it
        return true;
    }
    if (event->type() == QEvent::Hide) { // earlier than HideToParent: before the focus goes elsewhere
        for (const Tool& tool : std::as_const(m_tools)) {
            if (tool.widget == watched && tool.widget->isHidden()) { // not with the panel
                letButtonsHaveFocus();
                giveFocusBack(tool);
            }
        }
    }
    return Menu::eventFilter(watched, event);
}

void Configure::giveKey(QObject* tool, QEvent* key)
{
    const QPointer<Configure> self(this); // what the key does may open a box, and the session end meanwhile
    m_toolHasKey = true;
    tool->event(key);
    if (self)
        m_toolHasKey = false;
}

void Configure::letButtonsHaveFocus()
{
    const Qt::FocusPolicy policy = toolInView() ? Qt::NoFocus : Qt::StrongFocus;
    for (const Tool& tool : std::as_const(m_tools))
        tool.button->setFocusPolicy(policy);
}

void Configure::giveFocusBack(const Tool& tool)
{
    const QWidget* const focused = focusWidget();
    if (!focused || !tool.widget->isAncestorOf(focused))
        return;
    if (m_toolHasKey || FocusFrame::isShownOn(focused))
        FocusFrame::giveFocus(tool.button);
    else
        tool.button->setFocus(Qt::OtherFocusReason);
}

void Configure::focusInEvent(QFocusEvent* event)
{
    Menu::focusInEvent(event);
    QWidget* const tool = toolInView();
    if (!tool)
        return;
    QWidget* const last = tool->focusWidget();
    (last ? last : tool)->setFocus(event->reason());
}

void Configure::keyPressEvent(QKeyEvent* event)
{
    if (toolInView())
        event->ignore();
    else
        Menu::keyPressEvent(event);
}

void Configure::resizeEvent(QResizeEvent* event)
{
    Menu::resizeEvent(event);
    if (QWidget* const tool = toolInView())
        tool->setFixedSize(event->size());
}
