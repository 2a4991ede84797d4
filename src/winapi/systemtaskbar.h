#pragma once

namespace winapi {

// The task bar of Windows' own shell. Wanted: it is looked for under the class name "System_TrayWnd", and
// told its state whether or not it is there.
void hideSystemTaskBar();    // hidden until the mouse comes near
void restoreSystemTaskBar(); // kept on top of other windows

} // namespace winapi
