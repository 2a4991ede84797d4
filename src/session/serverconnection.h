#pragma once

#include <QtGlobal>

class TWClient;

// The session's connection to the central server: makes the process-wide client (env/serverslot.h), owns it
// and takes leave of the server. GUI thread only; every call blocks until the server has answered.
class ServerConnection
{
public:
    ServerConnection() = default;
    ~ServerConnection();
    Q_DISABLE_COPY(ServerConnection)

    // Creates the client, in place of an earlier one, and connects it. When that fails there is none, and the
    // log says so.
    bool connectToServer();

    // Ends the session on the server and drops the client. Nothing happens without one.
    void endSession();

    // Null without a server.
    TWClient* client() const { return m_client; }

private:
    void dropClient();

    TWClient* m_client = nullptr; // owned
};
