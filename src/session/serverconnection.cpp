#include "session/serverconnection.h"

#include "env/log.h"
#include "env/serverslot.h"
#include "server/twclient.h"

namespace {
constexpr int connectedWait = 30000; // ms
} // namespace

ServerConnection::~ServerConnection()
{
    dropClient();
}

bool ServerConnection::connectToServer()
{
    dropClient(); // one at a time
    m_client = new TWClient;
    env::setServerClient(m_client);
    if (m_client->connectToServer()) {
        m_client->waitForConnected(connectedWait);
        return true;
    }
    dropClient();
    env::logError(QStringLiteral("Cannot connect to twserver"));
    return false;
}

void ServerConnection::endSession()
{
    if (m_client && m_client->isConnected())
        env::logInfo(m_client->sendCommand(QStringLiteral("end_session")));
    dropClient();
}

// The slot is cleared first: nobody must find a client that is saying good-bye.
void ServerConnection::dropClient()
{
    if (!m_client)
        return;
    TWClient* const client = m_client;
    m_client = nullptr;
    env::setServerClient(nullptr);
    delete client;
}
