// The process-wide client of the central server: null while there is no server. Set and cleared by the
// session's start and end, on the GUI thread; the slot does not own the client.
#pragma once

class TWClient;

namespace env {

TWClient* serverClient();
void setServerClient(TWClient* client);

} // namespace env
