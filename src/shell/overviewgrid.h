#pragma once

#include <QtGlobal>

namespace shell {

// How many columns the overview of this many tasks has, and as many rows: the least square that holds them,
// but never less than 3 x 3. 0 when there is no task.
constexpr int overviewColumns(int tasks)
{
    if (tasks <= 0)
        return 0;
    int columns = 3;
    while (qint64(columns) * columns < tasks)
        ++columns;
    return columns;
}

} // namespace shell
