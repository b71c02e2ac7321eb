#pragma once

#include <cstddef>
#include <vector>

#include "json_value.h"

/// An element of the grid.
struct Cell {
    int x = 0;
    int y = 0;
};

using Cells = std::vector<Cell>;

/// The library counts a list of elements in a 16-bit number.
constexpr std::size_t maxCells = 32767;

/// Elements that the optimiser leaves void, solid, or solid of a second kind. None is in two lists.
struct PassiveCells {
    Cells voids;
    Cells solids;
    Cells secondSolids;

    bool empty() const { return voids.empty() && solids.empty() && secondSolids.empty(); }
};

/// Reads a list of rectangles, discs and rings; each element comes once.
Cells readCells(const JsonValue& value, int width, int height);

/// Reads a drawing, or a list as above for each kind.
PassiveCells readPassiveCells(const JsonValue& value, int width, int height);

/// The library's records: a count, and then x and y of each element.
std::vector<short> cellRecords(const Cells& cells);

/// The library's records: the three counts, and then the elements of each kind.
std::vector<short> passiveRecords(const PassiveCells& passive);
