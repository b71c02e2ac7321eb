#pragma once

#include <array>
#include <vector>

#include "format/area.h"

namespace voxam::inline drawing {

/// A place in elements, x to the right and y down.
struct GridPoint {
    double x = 0;
    double y = 0;
};

/// Lines around an area on a grid: circles around its discs and rings, and the edges of its
/// other outermost elements.
std::vector<std::array<GridPoint, 2>> outlineOf(const Area& area, int width, int height);

}  // namespace voxam::inline drawing
