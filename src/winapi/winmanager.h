#pragma once

#include <QAbstractNativeEventFilter>
#include <QMutex>
#include <QRect>
#include <QThread>

// Watches the windows of the user's desktop, by looking every 300 ms, and tells what came, went, or has
// another title; whose window it is, and whether it is of any interest, is the receiver's business. A window
// is its HWND's value.
//
// Created on the GUI thread, by the controller, its parent. The signals come from a thread of its own:
// connect them so that they are queued. Whoever waits for that thread on the GUI thread must let events be
// processed meanwhile: the thread asks for titles, and those of this process's windows are answered by the
// GUI thread.
class WinManager : public QThread, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit WinManager(QObject* parent);
    ~WinManager() override;

    // Lets every event pass. Wanted as it is.
    bool nativeEventFilter(const QByteArray& eventType, void* message, long* result) override;

signals:
    void titleChanged(qlonglong window, QString newTitle);
    void unmapWindow(qlonglong window);
    void mapWindow(qlonglong window);

public slots:
    // Sets the system's work area to `rect`, in pixels of the desktop, and lets the system's own task bar
    // know. Called directly, on the GUI thread, which it blocks for 20 ms.
    //
    // Wanted: the edges are the rectangle's inclusive ones.
    void resize(QRect rect);
    // Ends the thread before its next look; it may sleep for 300 ms yet, or wait for a title. A stop before
    // the thread has begun to run is forgotten. May be called on any thread.
    void stop();

protected:
    void run() override;

private:
    bool isStopped();

    const qlonglong m_desktopWidget;
    QMutex m_stopLock;
    bool m_stopped = false; // guarded by it
};
