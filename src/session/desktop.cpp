#include "session/desktop.h"

#include "env/log.h"
#include "env/serverslot.h"
#include "server/twclient.h"
#include "session/login.h"
#include "winapi/systemtaskbar.h"
#include "winapi/windowssession.h"

#include <QCoreApplication>

namespace {
constexpr int connectedWait = 30000; // ms
} // namespace

Desktop::Desktop()
{
    if (!session::logIn([this] { return connectToServer(); }))
        exitApp();
}

void Desktop::exitApp()
{
    if (m_client) {
        if (m_client->isConnected())
            env::logInfo(m_client->sendCommand(QStringLiteral("end_session")));
        dropClient();
    }
    winapi::restoreSystemTaskBar();
    winapi::logOff();
    QCoreApplication::exit(0); // no effect before the event loop runs: Windows ends the process then
}

bool Desktop::connectToServer()
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

// The slot is cleared first: nobody must find a client that is saying good-bye.
void Desktop::dropClient()
{
    TWClient* const client = m_client;
    m_client = nullptr;
    env::setServerClient(nullptr);
    delete client;
}
