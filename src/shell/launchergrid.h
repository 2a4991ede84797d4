#pragma once

#include <QSize>

#include <functional>
#include <optional>

namespace shell {

// One cell of the launcher, and the button in it; pixels.
constexpr QSize launcherCell(74, 112);

struct GridCell
{
    int column = 0;
    int row = 0;
};

struct GridSize
{
    int columns = 0;
    int rows = 0;

    int cells() const { return columns * rows; }
    // The place of a cell in the launcher's order: down the first column, then down the next.
    int index(const GridCell& cell) const { return cell.column * rows + cell.row; }
    GridCell cell(int index) const { return {index / rows, index % rows}; }
};

// As many whole cells as a menu of `size` pixels has room for; may have columns and no rows, or the other way
// round.
GridSize gridSize(const QSize& size);

// The first cell in the launcher's order that is free; none when all are taken.
std::optional<GridCell> firstFreeCell(const GridSize& grid,
                                      const std::function<bool(const GridCell&)>& isFree);

// The cell beside `cell` in the direction of an arrow key; none at the border, nor for another key.
std::optional<GridCell> neighbour(const GridSize& grid, const GridCell& cell, int key);

} // namespace shell
