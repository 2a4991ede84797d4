#include "support/tabbartest.h"

#include "instances/appinstance.h"
#include "shell/taskfitting.h"

#include <QApplication>
#include <QScreen>
#include <QtTest>

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

ThreadButton* TabBarTest::addTask(qlonglong window)
{
    auto* const button =
        new ThreadButton(nullptr, ThreadButton::WindowButton, QPixmap(), QStringLiteral("task"),
                         QStringLiteral("text"), window, 1, 0); // the bar's
    m_bar->addButton(button);
    return button;
}

void TabBarTest::addTasks(int count)
{
    for (int i = 0; i < count; ++i)
        addTask(0x1000 + i);
}

QPushButton* TabBarTest::arrow(const char* name) const
{
    for (QPushButton* const button : m_bar->findChildren<QPushButton*>()) {
        if (button->accessibleName() == QLatin1String(name))
            return button;
    }
    return nullptr;
}

ThreadButton* TabBarTest::powerButton() const
{
    for (ThreadButton* const button : m_bar->findChildren<ThreadButton*>()) {
        if (button->kind() == ThreadButton::PowerButton)
            return button;
    }
    return nullptr;
}

QString TabBarTest::shown() const
{
    QString text;
    for (int i = 3; i < m_bar->count(); ++i)
        text += m_bar->buttonAt(i)->isHidden() ? QLatin1Char('.') : QLatin1Char('x');
    return text;
}

int TabBarTest::indexOf(ThreadButton* button) const
{
    for (int i = 0; i < m_bar->count(); ++i) {
        if (m_bar->buttonAt(i) == button)
            return i;
    }
    return -1;
}

int TabBarTest::roomFor()
{
    const int width = QGuiApplication::primaryScreen()->size().width();
    int tasks = 0;
    while (!shell::fitTasks(width, 3, tasks + 1).scrolls())
        ++tasks;
    return tasks;
}

void TabBarTest::showActive()
{
    m_bar->resize(QGuiApplication::primaryScreen()->size() - QSize(0, 42));
    m_bar->show();
    activate();
    m_bar->buttonAt(0)->setFocus();
}

void TabBarTest::activate()
{
    m_bar->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_bar.get()));
    QCoreApplication::processEvents();
}

void TabBarTest::setForegroundWindow([[maybe_unused]] qlonglong window)
{
#ifndef Q_OS_WIN
    simwin::setForegroundWindow(window);
#endif
}

void TabBarTest::initTestCase()
{
    qRegisterMetaType<AppInstance*>();
    qRegisterMetaType<ThreadButton*>();
    qRegisterMetaType<QWidget*>();
}

void TabBarTest::init()
{
    QuilletTest::init();
    m_bar = std::make_unique<TabBar>();
    clearDebugOutput();
}

void TabBarTest::cleanup()
{
    m_bar.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QuilletTest::cleanup();
}
