#include "shell/tabbar.h"

#include "config/configure.h"
#include "shell/menu.h"
#include "shell/ownwindow.h"
#include "shell/plainbutton.h"
#include "shell/taskfitting.h"
#include "shell/threadbutton.h"
#include "shell/threadwidget.h"
#include "winapi/windowoperations.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPointer>
#include <QScreen>

#include <algorithm>

namespace {

constexpr int arrowWidth = 24; // pixels
const Qt::WindowFlags barFlags = Qt::CustomizeWindowHint | Qt::WindowStaysOnTopHint |
                                 Qt::FramelessWindowHint | Qt::BypassWindowManagerHint;

// What windows are compared by.
quint32 key(qlonglong window)
{
    return static_cast<quint32>(window);
}

// As the controller gets it from the panel's buttons.
qlonglong signExtended(qlonglong window)
{
    return static_cast<qint32>(key(window));
}

QHBoxLayout* createLayout(Qt::Alignment alignment = Qt::Alignment())
{
    auto* const layout = new QHBoxLayout; // the layout's that takes it
    layout->setSpacing(0);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setAlignment(alignment);
    return layout;
}

QPushButton* createArrow(const char* picture, const char* name)
{
    auto* const arrow = new PlainButton(QIcon(QLatin1String(picture)), QString());
    arrow->setFixedSize(arrowWidth, shell::taskBarHeight);
    arrow->setAccessibleName(QLatin1String(name));
    arrow->hide();
    return arrow;
}

int screenWidth()
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return QApplication::desktop()->screenGeometry(-1).width();
    QT_WARNING_POP
}

} // namespace

TabBar::TabBar()
    : QWidget(nullptr, barFlags)
    , m_fixedLayout(createLayout(Qt::AlignLeft))
    , m_taskLayout(createLayout(Qt::AlignLeft))
    , m_rightLayout(createLayout())
    , m_panel(new ThreadWidget(false, this))
    , m_leftArrow(createArrow(":/icons/64x64/back.png", "leftButton"))
    , m_rightArrow(createArrow(":/icons/64x64/forward.png", "rightButton"))
    , m_windowHistory(this)
{
    setWindowTitle(QLatin1String(shell::ownWindowTitle));
    setAccessibleName(tr("Task bar"));
    m_leftArrow->setAccessibleDescription(tr("Earlier tasks"));
    m_rightArrow->setAccessibleDescription(tr("Later tasks"));
    QPalette colors = palette();
    colors.setBrush(QPalette::Window, QBrush(Qt::white));
    setPalette(colors);
    setAutoFillBackground(true);

    auto* const layout = createLayout();
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    m_fixedLayout->setSizeConstraint(QLayout::SetMinimumSize);
    m_panel->setFixedHeight(shell::taskBarHeight);
    auto* const taskArea = new QWidget(this);
    taskArea->setLayout(m_taskLayout);
    m_taskLayout->addWidget(m_leftArrow);
    m_taskLayout->addWidget(m_rightArrow);
    layout->addLayout(m_fixedLayout);
    layout->addWidget(m_panel);
    layout->addWidget(taskArea, 1);
    layout->addLayout(m_rightLayout);
    setLayout(layout);

    connect(m_leftArrow, SIGNAL(clicked()), this, SLOT(leftButtonClicked()));
    connect(m_rightArrow, SIGNAL(clicked()), this, SLOT(rightButtonClicked()));
    connect(m_panel, SIGNAL(closeButtonClicked(ThreadButton*)), this,
            SLOT(closeButtonClicked(ThreadButton*)));
    connect(m_panel, SIGNAL(killButtonClicked(ThreadButton*)), this, SLOT(killButtonClicked(ThreadButton*)));
    addFixedButtons();
    orderButtons();
    addSwitchKey(this);
    fillPages();
}

// --- The list of buttons

void TabBar::addButton(ThreadButton* button)
{
    if (!button)
        return;
    if (ThreadButton* const current = currentButton()) {
        const int position = m_buttons.indexOf(current);
        if (position != -1)
            m_lastIndex = position;
    }
    if (button->kind() != ThreadButton::PowerButton) {
        button->setIndex(indexOfWindow(button->windowId()));
        m_buttons.append(button);
        connect(button, SIGNAL(threadButtonClicked(int)), this, SLOT(setCurrentIndex(int)));
    }
    switch (button->kind()) {
    case ThreadButton::FixedButton:
        m_fixedLayout->addWidget(button);
        connect(button, SIGNAL(threadButtonClicked(QWidget*, bool)), this, SLOT(doMapWidget(QWidget*, bool)));
        break;
    case ThreadButton::WindowButton:
        m_taskLayout->insertWidget(m_taskLayout->count() - 1, button); // before the right arrow
        setTabOrder(m_taskLayout->itemAt(m_taskLayout->count() - 3)->widget(), button);
        select(button);
        updateContents();
        break;
    default:
        m_rightLayout->addWidget(button);
    }
}

int TabBar::indexOfWindow(qlonglong window) const
{
    if (key(window) == 0)
        return -1;
    for (int i = m_buttons.size() - 1; i >= 0; --i) {
        if (key(m_buttons.at(i)->windowId()) == key(window))
            return i;
    }
    return -1;
}

int TabBar::indexOfWidget(const QWidget* widget) const
{
    for (int i = m_buttons.size() - 1; widget && i >= 0; --i) {
        if (m_buttons.at(i)->widget() == widget)
            return i;
    }
    return -1;
}

int TabBar::fixedCount() const
{
    return static_cast<int>(std::count_if(m_buttons.begin(), m_buttons.end(), [](const ThreadButton* button) {
        return button->kind() == ThreadButton::FixedButton;
    }));
}

ThreadButton* TabBar::buttonAt(int position) const
{
    return m_buttons.value(position, nullptr);
}

ThreadButton* TabBar::currentButton() const
{
    return m_panel->threadButton();
}

void TabBar::removeButton(int position)
{
    qDebug("Removing button. lastIndex is %d", m_lastIndex);
    if (position == -1)
        position = m_lastIndex;
    const QPointer<ThreadButton> removed = buttonAt(position);
    if (removed) {
        if (removed == currentButton())
            m_panel->setThreadButton(nullptr);
        m_buttons.removeAt(position);
        m_taskLayout->removeWidget(removed);
        m_fixedLayout->removeWidget(removed);
        removed->deleteLater(); // its own click may have led here
    }
    const int foreground = indexOfWindow(winapi::foregroundWindow());
    if (foreground >= 0) {
        m_lastIndex = foreground;
        select(m_buttons.at(foreground));
    } else if (ThreadButton* const last = buttonAt(m_lastIndex)) {
        select(last);
    } else if (!m_buttons.isEmpty()) {
        emit mapWidget(m_launcher, true);
    }
    if (removed)
        removed->hide(); // now, when the next one can have its focus
    updateContents();
}

// --- The current one

void TabBar::select(ThreadButton* button)
{
    const int position = m_buttons.indexOf(button);
    ThreadButton* const old = currentButton();
    if (old && key(button->windowId()) != 0) {
        // Wanted: the picture of the window that comes goes to the button that is left.
        QScreen* const screen = QGuiApplication::screens().value(0);
        if (screen)
            old->setSnapshot(screen->grabWindow(static_cast<WId>(button->windowId()), 0, 0, -1, -1));
        const int oldPosition = m_buttons.indexOf(old);
        if (oldPosition != position)
            m_lastIndex = oldPosition;
    }
    qDebug("Setting selected button. NewIndex: %d, LastIndex: %d", position, m_lastIndex);
    m_panel->setThreadButton(button);
    m_lastIndex = position;
    if (QWidget* const page = button->widget()) {
        page->show();
        page->setFocus(Qt::ActiveWindowFocusReason);
    }
    emit currentChanged(position);
}

void TabBar::setCurrentIndex(int position)
{
    ThreadButton* const button = buttonAt(position);
    if (!button)
        return;
    m_lastIndex = position;
    select(button);
}

void TabBar::refresh()
{
    if (ThreadButton* const button = buttonAt(m_lastIndex))
        select(button);
}

void TabBar::showDesktop()
{
    setCurrentIndex(0);
    emit mapWidget(m_launcher, true);
}

void TabBar::setCurrentThreadName(const QString& name)
{
    m_panel->setName(name);
}

void TabBar::setCurrentThreadText(const QString& text)
{
    m_panel->setText(text);
}

void TabBar::closeButtonClicked(ThreadButton* button)
{
    if (button)
        emit closeButtonClicked(signExtended(button->windowId()));
}

void TabBar::killButtonClicked(ThreadButton* button)
{
    if (button)
        emit killButtonClicked(signExtended(button->windowId()));
}

void TabBar::doMapWidget(QWidget* widget, bool force)
{
    emit mapWidget(widget, force);
}

// --- Geometry

void TabBar::resize(QSize desktopSize)
{
    qDebug("Setting new geometry - x: %d, y: %d, width: %d, height: %d", 0, desktopSize.height(),
           desktopSize.width(), shell::taskBarHeight);
    const QRect strip(0, desktopSize.height(), desktopSize.width(), shell::taskBarHeight);
    setGeometry(strip);
    m_configuration->resize(desktopSize);
    m_launcher->resize(desktopSize);
    updateContents();
    // Before a smaller screen the tasks in view held the bar as wide as they were.
    m_taskLayout->activate();
    layout()->activate();
    setGeometry(strip);
}

int TabBar::taskCount() const
{
    return m_taskLayout->count() - 2;
}

void TabBar::showTask(int task, bool shown)
{
    if (task >= 0 && task < taskCount())
        m_taskLayout->itemAt(task + 1)->widget()->setVisible(shown);
}

void TabBar::updateContents()
{
    const int tasks = taskCount();
    const shell::TaskFit fit = shell::fitTasks(screenWidth(), m_fixedLayout->count(), tasks);
    m_panel->setFixedSize(std::max(fit.panelWidth, 0), shell::taskBarHeight);
    m_scrollLimit = fit.scrollLimit;
    m_firstVisible = fit.firstVisible;
    layout()->setEnabled(false); // else it widens the bar whenever there is too much on the way
    for (int task = 0; task < tasks; ++task) {
        if (fit.scrolls())
            qDebug(fit.shows(task) ? "shown" : "hidden");
        if (fit.shows(task))
            showTask(task, true);
    }
    for (int task = 0; task < tasks; ++task) { // now that the current one can have a hidden one's focus
        if (!fit.shows(task))
            showTask(task, false);
    }
    m_leftArrow->setVisible(fit.scrolls());
    m_rightArrow->setVisible(fit.scrolls());
    updateArrows();
    layout()->setEnabled(true);
    layout()->activate();
}

void TabBar::updateArrows()
{
    const bool right = m_firstVisible < m_scrollLimit;
    if (right)
        m_rightArrow->setEnabled(true); // first: the left one may leave its focus to it
    m_leftArrow->setEnabled(m_firstVisible != 0);
    m_rightArrow->setEnabled(right);
}

void TabBar::leftButtonClicked()
{
    const shell::ScrollStep step = shell::scrollLeft(m_firstVisible, m_scrollLimit, taskCount());
    showTask(step.hide, false);
    showTask(step.show, true);
    m_firstVisible = step.firstVisible;
    updateArrows();
}

void TabBar::rightButtonClicked()
{
    const shell::ScrollStep step = shell::scrollRight(m_firstVisible, m_scrollLimit, taskCount());
    showTask(step.hide, false);
    showTask(step.show, true);
    m_firstVisible = step.firstVisible;
    updateArrows();
}
