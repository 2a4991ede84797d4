#pragma once

// Makes the compiled-in files known; without it the linker drops them, as nobody names them. Calling it again
// is harmless.
void initResources();
