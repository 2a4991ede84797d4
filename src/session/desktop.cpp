#include "session/desktop.h"

#include "session/busycursor.h"
#include "session/login.h"
#include "session/screensize.h"
#include "shell/messagebox.h"
#include "shell/ownwindow.h"
#include "shell/tabbar.h"
#include "shell/taskfitting.h"
#include "shell/threadbutton.h"
#include "winapi/processes.h"
#include "winapi/sessionmanager.h"
#include "winapi/systemtaskbar.h"
#include "winapi/windowoperations.h"
#include "winapi/windowssession.h"
#include "winapi/winmanager.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QDir>
#include <QScopedValueRollback>

#include <utility>

namespace {

constexpr quint32 stillActive = 259; // an exit code's value
const QSize launchIconSize(48, 42);  // pixels

// What the task bar leaves of the desktop.
QSize pageSize()
{
    return (session::desktopSize() - QSize(0, shell::taskBarHeight)).expandedTo(QSize(0, 0));
}

bool isOwnWindow(quint32 processId)
{
    return processId == QCoreApplication::applicationPid();
}

QIcon defaultIcon()
{
    return QIcon(QStringLiteral(":/icons/applications") + QDir::separator() + QStringLiteral("default.png"));
}

void fitPage(QWidget* page)
{
    if (page->isMaximized()) // by somebody else
        page->setWindowState(page->windowState() & ~Qt::WindowMaximized);
    page->setFixedSize(pageSize());
    page->move(0, 0);
}

// While a box is open nothing else of the shell answers, so a window that comes to the front, and fills the
// screen, must not cover it.
void keepQuestionInFront()
{
    if (QWidget* const box = QApplication::activeModalWidget()) {
        box->raise();
        box->activateWindow();
    }
}

// Windows of applications are maximised; a page stays in its place.
void bringToFront(const ThreadButton& button)
{
    QWidget* const page = button.widget();
    if (!page) {
        winapi::bringWindowToFront(button.windowId(), false);
        return;
    }
    fitPage(page);
    winapi::raiseWindow(button.windowId());
}

} // namespace

Desktop::Desktop()
{
    if (session::logIn([this] { return connectToServer(); }))
        buildScreen();
    else
        exitApp();
}

void Desktop::buildScreen()
{
    connect(QApplication::desktop(), SIGNAL(resized(int)), this, SLOT(resize(int)));

    m_sessionEvents = new SessionManager;
    connect(m_sessionEvents, SIGNAL(clientConnectEvent()), this, SLOT(clientConnected()));
    m_sessionEvents->start(QThread::InheritPriority);

    m_windows = new WinManager(this);
    connect(m_windows, SIGNAL(mapWindow(qlonglong)), this, SLOT(mapWindow(qlonglong)));
    connect(m_windows, SIGNAL(unmapWindow(qlonglong)), this, SLOT(unmapWindow(qlonglong)));
    connect(m_windows, SIGNAL(titleChanged(qlonglong, QString)), this,
            SLOT(titleChanged(qlonglong, QString)));

    m_tabBar = new TabBar;
    const QSize desktop = session::desktopSize();
    m_tabBar->setGeometry(0, desktop.height() - shell::taskBarHeight, desktop.width(), shell::taskBarHeight);
    connect(m_tabBar, SIGNAL(closeButtonClicked(qlonglong)), this, SLOT(closeButtonClicked(qlonglong)));
    connect(m_tabBar, SIGNAL(killButtonClicked(qlonglong)), this, SLOT(killButtonClicked(qlonglong)));
    connect(m_tabBar, SIGNAL(currentChanged(int)), this, SLOT(setSelected(int)));
    connect(m_tabBar, SIGNAL(launchApplication(AppInstance*)), this, SLOT(launchApplication(AppInstance*)));
    connect(m_tabBar, SIGNAL(openFile(QString, QString)), this, SLOT(openFile(QString, QString)));
    connect(m_tabBar, SIGNAL(mapWidget(QWidget*, bool)), this, SLOT(mapWidget(QWidget*, bool)));
    connect(m_tabBar, SIGNAL(exitApp()), this, SLOT(exitApp()));

    m_windows->start(QThread::InheritPriority);
    resize();
}

bool Desktop::connectToServer()
{
    return m_server.connectToServer();
}

void Desktop::loadedFinished()
{
    m_loading = false;
}

// --- The screen

void Desktop::resize(int)
{
    resize();
}

void Desktop::resize()
{
    if (!m_tabBar)
        return;
    const QSize size = pageSize();
    winapi::hideSystemTaskBar();
    m_windows->resize(QRect(QPoint(0, 0), size));
    m_tabBar->resize(size);
    fitPages();
    m_tabBar->show();
    if (m_tabBar->currentButton())
        m_tabBar->refresh();
    else
        m_tabBar->showDesktop();
}

void Desktop::clientConnected()
{
    resize();
}

// All of them, so that none is seen at another size first.
void Desktop::fitPages()
{
    for (int i = 0; i < m_tabBar->count(); ++i) {
        if (QWidget* const page = m_tabBar->buttonAt(i)->widget())
            fitPage(page);
    }
}

// --- Tasks

void Desktop::setSelected(int index)
{
    const ThreadButton* const button = m_tabBar ? m_tabBar->buttonAt(index) : nullptr;
    if (!button)
        return;
    const qlonglong window = button->windowId();
    setThreadWidgetName(index);
    qDebug("Setting selected index: %d, window: %d, ", button->index(), static_cast<int>(window));
    setThreadWidgetTitle(window);
    bringToFront(*button);
    if (button->widget())
        m_tabBar->setCurrentThreadText(button->taskText()); // also of a page without a window of its own
    keepQuestionInFront();
}

void Desktop::setThreadWidgetName(int index)
{
    const ThreadButton* const button = m_tabBar ? m_tabBar->buttonAt(index) : nullptr;
    if (!button)
        return;
    m_tabBar->setCurrentThreadName(button->name());
    if (button->windowId() != 0)
        m_tabBar->setCurrentThreadText(button->taskText());
}

void Desktop::setThreadWidgetTitle(qlonglong window)
{
    const ThreadButton* const button =
        m_tabBar && window >= 0 ? m_tabBar->buttonAt(m_tabBar->indexOfWindow(window)) : nullptr;
    if (button)
        m_tabBar->setCurrentThreadText(button->widget() ? button->taskText() : winapi::windowTitle(window));
}

void Desktop::mapWindow(qlonglong window)
{
    if (!m_tabBar)
        return;
    const quint32 processId = winapi::windowProcessId(window);
    const int index = m_tabBar->indexOfWindow(window);
    qDebug("Index of window %d is %d", static_cast<int>(window), index);
    if (index < 0) {
        if (!winapi::isApplicationWindow(window) || isOwnWindow(processId) ||
            winapi::windowTitle(window) == QLatin1String(shell::ownWindowTitle))
            return;
        attachWindow(window, processId);
    } else {
        m_tabBar->setCurrentIndex(index);
        bringToFront(*m_tabBar->buttonAt(index));
    }
    setThreadWidgetTitle(window);
    setThreadWidgetName(index);
    keepQuestionInFront();
}

void Desktop::attachWindow(qlonglong window, quint32 processId)
{
    const QSize size = pageSize();
    qDebug("Attaching window %s (desktop size: %dx%d)", qUtf8Printable(winapi::windowTitle(window)),
           size.width(), size.height());
    winapi::bringWindowToFront(window, false);
    if (m_launchIcon.isNull())
        m_launchIcon = defaultIcon(); // kept: each new one would leave a picture in Qt's cache
    auto* const button =
        new ThreadButton(nullptr, ThreadButton::WindowButton, m_launchIcon.pixmap(launchIconSize),
                         m_launchName, m_launchName, window, processId, 0); // the task bar's
    m_tabBar->addButton(button);
    connect(button, SIGNAL(threadButtonClicked(qlonglong)), this, SLOT(mapWindow(qlonglong)));
    session::showReady(); // the launch has produced its window
}

void Desktop::mapNotify() {}

void Desktop::unmapWindow(qlonglong window)
{
    if (!m_tabBar || window == 0)
        return;
    // Wanted: a wait never answers this, so that the button goes whether or not the process still runs.
    if (winapi::processWaitResult(winapi::windowProcessId(window)) == stillActive)
        return;
    const int index = m_tabBar->indexOfWindow(window);
    if (index < m_tabBar->fixedCount())
        return;
    m_tabBar->removeButton(index);
    qDebug("Removed index %d", index);
}

void Desktop::titleChanged(qlonglong window, const QString& newTitle)
{
    if (!m_tabBar)
        return;
    qDebug("Title changed!!! to %s", qUtf8Printable(newTitle));
    const int index = m_tabBar->indexOfWindow(window);
    const int current = m_tabBar->currentIndex();
    if (index < 0 || index != current) {
        qDebug("Not current title, as current index is %d and window index is %d", current, index);
        return;
    }
    const ThreadButton* const button = m_tabBar->buttonAt(index);
    m_tabBar->setCurrentThreadText(button->widget() ? button->taskText() : newTitle);
}

void Desktop::closeButtonClicked(qlonglong window)
{
    winapi::closeWindow(window);
    winapi::bringWindowToFront(window, false);
}

void Desktop::killButtonClicked(qlonglong window)
{
    winapi::quitWindow(window);
}

// --- Pages

void Desktop::mapWidget(QWidget* widget, bool force)
{
    if (!m_tabBar || !widget)
        return;
    qDebug("Mapping widget...");
    const int index = m_tabBar->indexOfWidget(widget);
    qDebug("Index: %d", index);
    if (!force && (index < 0 || index == m_tabBar->currentIndex()))
        return;
    qDebug("Setting current index to %d", index);
    m_tabBar->setCurrentIndex(index);
    shell::setPageFlags(widget);
    fitPage(widget);
    widget->setFocus(Qt::OtherFocusReason);
    widget->show();
    if (!widget->isWindow())
        widget->raise(); // a tool, above what its page shows
    widget->activateWindow();
    widget->updateGeometry();
    keepQuestionInFront();
    qDebug("Widget size: %dx%d", widget->width(), widget->height());
}

void Desktop::mapWidget(QWidget* widget)
{
    mapWidget(widget, false);
}

// --- The end

void Desktop::exitApp()
{
    if (m_asking)
        return; // the answer is to come
    if (wantsSuspension()) {
        winapi::disconnect();
        return;
    }
    m_server.endSession();
    // The button that was pressed is one of the bar's: pages and drives are closed now, the objects go later.
    if (TabBar* const tabBar = std::exchange(m_tabBar, nullptr)) {
        tabBar->close();
        tabBar->deleteLater();
    }
    winapi::restoreSystemTaskBar();
    winapi::logOff();
    QCoreApplication::exit(0); // no effect before the event loop runs: Windows ends the process then
}

bool Desktop::wantsSuspension()
{
    if (!m_tabBar || m_tabBar->count() <= m_tabBar->fixedCount())
        return false;
    const QScopedValueRollback<bool> asking(m_asking, true);
    return shell::showBox(nullptr, QMessageBox::Question, tr("Suspend session"),
                          tr("There are currently running applications. Do you want to suspend session "
                             "keeping them running?"),
                          QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}
