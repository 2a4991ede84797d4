#include "shell/windowhistory.h"

void WindowHistory::removeWindow(ApplicationWindow) {}
