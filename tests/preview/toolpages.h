#pragma once

#include "preview/pages.h"

// The configuration panel and its tools.
QList<Page> toolPages();
