#pragma once

#include <QLabel>
#include <QString>
#include <QStringList>

class Configure;
class Desktop;
class FileSystemWidget;
class Menu;
class TabBar;
class ThreadButton;
class WinManager;

// The shell from its controller's constructor to its end, within a test on the simulated Windows. A
// controller is never destroyed: what this object starts stays, asleep, when it goes. GUI thread.
class RunningShell
{
public:
    RunningShell();
    // Ends the session, without a question, and waits until the tracker is still.
    ~RunningShell();
    Q_DISABLE_COPY(RunningShell)

    Desktop& desktop() const { return *m_desktop; }
    // Null when the login failed, and after the end.
    TabBar* bar() const;
    WinManager* tracker() const;
    Menu* launcher() const;
    FileSystemWidget* fileManager() const;
    Configure* configuration() const;

    // The task panel's lines.
    QString panelName() const;
    QString panelText() const;
    // What the buttons behind the fixed ones stand for, "name@handle" with the handle in hexadecimal digits.
    QStringList tasks() const;
    // The log-off button.
    ThreadButton* powerButton() const;

    // Ends the tracker, for tests that tell the controller of windows themselves.
    void stopTracker();

private:
    Desktop* const m_desktop;
};
