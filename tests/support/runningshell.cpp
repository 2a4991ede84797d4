#include "support/runningshell.h"

#include "config/configure.h"
#include "files/filesystemwidget.h"
#include "session/desktop.h"
#include "shell/tabbar.h"
#include "shell/threadbutton.h"
#include "simwin.h"
#include "winapi/winmanager.h"

#include <QApplication>
#include <QtTest>

namespace {

// Those that were and those that are.
QList<Desktop*>& controllers()
{
    static auto* const list = new QList<Desktop*>; // reachable until the process has ended
    return *list;
}

Desktop* createController()
{
    auto* const controller = new Desktop;
    controllers().append(controller);
    return controller;
}

// The last one: an earlier bar may still wait for its deletion.
template <typename Widget>
Widget* topLevel()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* const widget : widgets) {
        if (widget->metaObject() == &Widget::staticMetaObject)
            return static_cast<Widget*>(widget);
    }
    return nullptr;
}

} // namespace

RunningShell::RunningShell()
    : m_desktop(createController())
{}

RunningShell::~RunningShell()
{
    stopTracker();
    if (TabBar* const b = bar()) {
        while (b->count() > b->fixedCount())
            b->removeButton(b->count() - 1);
        m_desktop->exitApp();
    }
    QTimer::singleShot(0, qApp, SLOT(quit())); // an exit() without an event loop spoils the next one
    QCoreApplication::exec();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TabBar* RunningShell::bar() const
{
    return topLevel<TabBar>();
}

WinManager* RunningShell::tracker() const
{
    return m_desktop->findChild<WinManager*>();
}

Menu* RunningShell::launcher() const
{
    return topLevel<Menu>();
}

FileSystemWidget* RunningShell::fileManager() const
{
    return topLevel<FileSystemWidget>();
}

Configure* RunningShell::configuration() const
{
    return topLevel<Configure>();
}

QString RunningShell::panelName() const
{
    return bar()->findChild<QLabel*>(QStringLiteral("nameLabel"))->text();
}

QString RunningShell::panelText() const
{
    return bar()->findChild<QLabel*>(QStringLiteral("textLabel"))->text();
}

QStringList RunningShell::tasks() const
{
    QStringList list;
    for (int i = bar()->fixedCount(); i < bar()->count(); ++i) {
        const ThreadButton* const button = bar()->buttonAt(i);
        list.append(button->name() + QLatin1Char('@') + QString::number(button->windowId(), 16));
    }
    return list;
}

ThreadButton* RunningShell::powerButton() const
{
    const QList<ThreadButton*> buttons = bar()->findChildren<ThreadButton*>();
    for (ThreadButton* const button : buttons) {
        if (button->kind() == ThreadButton::PowerButton)
            return button;
    }
    return nullptr;
}

void RunningShell::stopTracker()
{
    WinManager* const thread = tracker();
    if (!thread || thread->isFinished())
        return;
    // A stop before its first look would be forgotten.
    while (!simwin::callNames().contains("EnumWindows"))
        QTest::qWait(1);
    thread->stop();
    while (!thread->wait(1)) // it may ask this thread for a title
        QCoreApplication::processEvents();
    QCoreApplication::removePostedEvents(m_desktop, QEvent::MetaCall);
}
