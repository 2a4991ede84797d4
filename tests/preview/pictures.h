#pragma once

#include "preview/pages.h"

// Every compiled-in picture at the sizes that the program shows it in, and the program's buttons in each of
// their states: to be looked at after a change of the artwork.
Page picturesPage();
