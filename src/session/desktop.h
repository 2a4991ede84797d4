#pragma once

#include <QObject>

class TWClient;

// The controller of the shell: everything that happens in a session passes through it. Created once by
// start-up, on the GUI thread, and never destroyed. Its constructor logs the user in before it returns; when
// that fails the session is ended, and what is left is an event loop without a window until Windows ends the
// process.
class Desktop : public QObject
{
    Q_OBJECT

public:
    Desktop();

public slots:
    // Ends the session: on the central server, then on Windows.
    void exitApp();

    // Creates the process-wide client and connects it. When that fails there is none, and the log says so.
    bool connectToServer();

private:
    void dropClient();

    TWClient* m_client = nullptr; // owned; null without a server
};
