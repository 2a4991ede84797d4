#pragma once

namespace app {

// Builds the application (it gets no command line), its style and translation, writes "Calling manager" to
// the log, creates the Desktop controller, which lives until the process ends, and runs the event loop.
// Returns the event loop's result.
int shellMain();

} // namespace app
