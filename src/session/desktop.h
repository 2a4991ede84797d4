#pragma once

#include "session/serverconnection.h"

#include <QIcon>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QTimer>

class AppInstance;
class SessionManager;
class TabBar;
class WinManager;

// The controller of the shell: everything that happens in a session passes through it. Its constructor logs
// the user in, then builds the screen and starts the two threads; when the login fails the session is ended,
// and what is left is an event loop without a window until Windows ends the process. It starts applications,
// gives their windows task buttons, shows the built-in pages, and ends or suspends the session.
//
// Created once by start-up, on the GUI thread, where all its slots run, and never destroyed. Windows are
// HWNDs' values and positions those of the task bar's list of buttons; the threads' news are queued, so that
// a window may be gone, or have changed, when it is told. Sizes are in pixels of the desktop.
//
// A launch is under way from its start until the first window of an application comes or 15 seconds have
// passed: the desktop widget shows the wait cursor meanwhile, and further launches are ignored.
class Desktop : public QObject
{
    Q_OBJECT

public:
    Desktop();

    // The process of the last launch, and that of a process id; null when it has ended or there is none.
    QProcess* currentProcess() const { return m_currentProcess; }
    QProcess* process(qint64 processId) const { return m_processes.value(processId); }
    bool isLoading() const { return m_loading; }

signals:
    void fileOpened(); // never emitted here

public slots:
    // Offers to suspend the session while applications run; otherwise, or when the user declines, ends it: on
    // the central server, on the screen, then on Windows.
    void exitApp();

    // Starts the application, which stays its owner's, and blocks until its process runs.
    void launchApplication(AppInstance* app);
    // Opens a file with the application, or with the one registered for its extension when that is empty.
    // Nothing happens when none is registered. Links that lead nowhere are told.
    void openFile(const QString& file, const QString& application);
    void openFile(const QString& file);
    void openMime(const QString& location, const QString& mime); // does nothing
    // The launch's window has not come.
    void timeout();

    // Lays the screen out anew, as on a change of its size. The page or window in view stays in view.
    void resize(int screen);
    void resize();
    // A reconnected client may bring another screen size.
    void clientConnected();

    // A task button was chosen: shows what it stands for.
    void setSelected(int index);
    void loadedFinished();
    // Puts a button's name and, when it belongs to a window, its text into the task panel.
    void setThreadWidgetName(int index);
    // Puts a window's title into the task panel. A built-in page has none: its button's text stands for it.
    void setThreadWidgetTitle(qlonglong window);

    // Creates the process-wide client and connects it. When that fails there is none, and the log says so.
    bool connectToServer();

    // Gives a new window of an application a task button, or shows the window that has one. The shell's own
    // windows, boxes included, never get one.
    void mapWindow(qlonglong window);
    void mapNotify(); // does nothing
    // The window is gone, and its button goes.
    void unmapWindow(qlonglong window);
    void titleChanged(qlonglong window, const QString& newTitle);

    // Shows one of the shell's pages above the task bar; `force`: also when it is shown already, or has no
    // button.
    void mapWidget(QWidget* widget, bool force);
    void mapWidget(QWidget* widget);

    // Asks the window to close, and shows it, because it may ask something.
    void closeButtonClicked(qlonglong window);
    void killButtonClicked(qlonglong window);

private:
    void buildScreen();
    // False when the launch was ignored, or its process did not start.
    bool launch(AppInstance* app);
    void attachWindow(qlonglong window, quint32 processId);
    void fitPages();
    bool wantsSuspension();

    SessionManager* m_sessionEvents = nullptr; // the process's: it has no end
    WinManager* m_windows = nullptr;           // a child
    ServerConnection m_server;
    TabBar* m_tabBar = nullptr; // owned; null before the login and after the end of the session
    QTimer m_launchTimer{this};
    QIcon m_launchIcon;
    QString m_launchName;
    QPointer<QProcess> m_currentProcess;
    QMap<qint64, QPointer<QProcess>> m_processes; // of every launch; nothing is removed
    bool m_loading = false;
    bool m_launching = false; // a launch has begun and its process is not started yet
    bool m_asking = false;    // whether the session is to be suspended
};
