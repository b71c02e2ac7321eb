#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "format/cell.h"

namespace voxam::inline format {

/// A rectangle of values, row by row with the top row first: value (x, y) is at y * width + x, with
/// x counting columns from the left and y counting rows from the top.
template <typename Value>
struct Grid {
    int width = 0;
    int height = 0;
    std::vector<Value> values;

    Grid() = default;
    Grid(int columns, int rows, Value value = {})
        : width(columns),
          height(rows),
          values(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), value) {}

    bool contains(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
    Value& at(int x, int y) { return values[index(x, y)]; }
    Value at(int x, int y) const { return values[index(x, y)]; }
    /// The value at (x, y), or `outside` if it is outside the grid.
    Value get(int x, int y, Value outside = {}) const {
        return contains(x, y) ? at(x, y) : outside;
    }

    bool operator==(const Grid&) const = default;

private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

/// Marks of elements or nodes; 0 means no mark.
using Mask = Grid<std::uint8_t>;

/// Marks elements. Those outside are ignored.
inline void mark(Mask& mask, const Cells& cells, std::uint8_t value = 1) {
    for (const Cell& cell : cells)
        if (mask.contains(cell.x, cell.y)) mask.at(cell.x, cell.y) = value;
}

/// The elements with a mark, in the order of an area.
inline Cells cellsWith(const Mask& mask, std::uint8_t value = 1) {
    Cells cells;
    for (int x = 0; x < mask.width; ++x)
        for (int y = 0; y < mask.height; ++y)
            if (mask.at(x, y) == value) cells.push_back({x, y});
    return cells;
}

}  // namespace voxam::inline format
