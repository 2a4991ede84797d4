#pragma once

#include <QThread>

// Tells when a remote-desktop client connects to any session of this machine. Created by the controller,
// without a parent; the signal comes from a thread of its own.
//
// Wanted: the thread has no end of its own, it is never deleted, and where Windows cannot wait for events it
// tries again at once, for ever. The end of the process ends it.
class SessionManager : public QThread
{
    Q_OBJECT

public:
    SessionManager();
    ~SessionManager() override;

signals:
    // Once per wake-up, however many clients connected.
    void clientConnectEvent();

protected:
    void run() override;
};
