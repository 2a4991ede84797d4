#pragma once

#include "preview/pages.h"

// The launcher, the task bar and what belongs to it.
QList<Page> shellPages();
