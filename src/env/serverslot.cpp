#include "env/serverslot.h"

namespace env {

namespace {
TWClient* s_serverClient = nullptr;
} // namespace

TWClient* serverClient()
{
    return s_serverClient;
}

void setServerClient(TWClient* client)
{
    s_serverClient = client;
}

} // namespace env
