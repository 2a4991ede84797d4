#pragma once

#include <functional>

namespace session {

// The first half of a session's start: finds out who the user is, connects to the central server when one is
// configured, proves the user's identity with the stored token or a password, stores a new token, and opens
// the session on the server.
//
// `connectToServer` creates the process-wide client and connects it (env/serverslot.h). False when the
// session has to end: then the user has been told why, unless it was the user's own wish. GUI thread; the
// login dialog runs an event loop of its own.
bool logIn(const std::function<bool()>& connectToServer);

} // namespace session
