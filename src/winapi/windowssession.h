#pragma once

namespace winapi {

// Asks Windows to log the user off. Returns at once; Windows then ends the session's processes, this one
// included.
void logOff();

// Disconnects the user's remote-desktop client. The session and its programs, this one included, go on
// without it.
void disconnect();

} // namespace winapi
