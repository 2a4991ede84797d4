// The wait cursor of a launch: on the desktop widget, whose shape tells whether the shell is busy, and on the
// shell's own windows, because they do not inherit it. GUI thread only.
#pragma once

namespace session {

bool isBusy();
void showBusy();
// Nothing happens while the shell is not busy.
void showReady();

} // namespace session
