#pragma once

#include <compare>
#include <vector>

namespace voxam::inline format {

/// An element of the grid.
struct Cell {
    int x = 0;
    int y = 0;

    auto operator<=>(const Cell&) const = default;
};

using Cells = std::vector<Cell>;

}  // namespace voxam::inline format
