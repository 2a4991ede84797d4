#pragma once

#include "shell/tabbar.h"
#include "shell/threadbutton.h"
#include "shell/threadwidget.h"
#include "support/quillettest.h"

#include <QPushButton>

#include <memory>

// What tests of the task bar derive from: each test function gets one, without tasks.
class TabBarTest : public QuilletTest
{
    Q_OBJECT

protected:
    // A task's button, given to the bar.
    ThreadButton* addTask(qlonglong window);
    void addTasks(int count);

    QPushButton* arrow(const char* name) const;
    ThreadWidget* panel() const { return m_bar->findChild<ThreadWidget*>(); }
    ThreadButton* powerButton() const;
    // The tasks in their order, "x" for each that is not hidden.
    QString shown() const;
    int indexOf(ThreadButton* button) const;
    int current() const { return m_bar->currentButton() ? indexOf(m_bar->currentButton()) : -1; }

    // How many tasks the screen has room for.
    static int roomFor();

    // The bar is shown over the screen's width, and its first button has the focus.
    void showActive();
    // A page that is selected takes the activation on Windows.
    void activate();

    // On Windows the foreground window is the one that a test activated; other tasks' windows do not exist.
    static void setForegroundWindow(qlonglong window);

    std::unique_ptr<TabBar> m_bar;

protected slots:
    void initTestCase();
    void init();
    void cleanup();
};
