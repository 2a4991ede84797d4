#pragma once

namespace app {

// What the Windows entry point does: splits the command line, calls administratorGate() with it and returns
// its result, the exit code of the process; -1 at once when the command line cannot be split.
int windowsEntry();

// Decides, before any Qt object exists, what the user gets, and ignores its arguments. Members of the local
// Administrators group get the ordinary desktop: "explorer.exe" is started and the process ends here, with
// exit code 0. Everybody else gets the shell; 0 comes back after it, whatever shellMain() returned.
int administratorGate(int argumentCount, char** arguments);

} // namespace app
