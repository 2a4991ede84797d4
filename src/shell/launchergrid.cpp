#include "shell/launchergrid.h"

namespace shell {

GridSize gridSize(const QSize& size)
{
    const auto fitting = [](double space, int cell) { return qMax(0, static_cast<int>(space / cell)); };
    return {fitting(size.width(), launcherCell.width()), fitting(size.height(), launcherCell.height())};
}

std::optional<GridCell> firstFreeCell(const GridSize& grid,
                                      const std::function<bool(const GridCell&)>& isFree)
{
    for (int index = 0; index < grid.cells(); ++index) {
        if (isFree(grid.cell(index)))
            return grid.cell(index);
    }
    return std::nullopt;
}

std::optional<GridCell> neighbour(const GridSize& grid, const GridCell& cell, int key)
{
    GridCell next = cell;
    if (key == Qt::Key_Left)
        --next.column;
    else if (key == Qt::Key_Right)
        ++next.column;
    else if (key == Qt::Key_Up)
        --next.row;
    else if (key == Qt::Key_Down)
        ++next.row;
    else
        return std::nullopt;
    if (next.column < 0 || next.column >= grid.columns || next.row < 0 || next.row >= grid.rows)
        return std::nullopt;
    return next;
}

} // namespace shell
