#pragma once

namespace winapi {

// Asks Windows to log the user off. Returns at once; Windows then ends the session's processes, this one
// included.
void logOff();

} // namespace winapi
