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

/// Lines around an area on a grid: circles where its elements were given as discs and rings, else
/// the edges of its outermost elements.
std::vector<std::array<GridPoint, 2>> outlineOf(const Area& area, int width, int height);

}  // namespace voxam::inline drawing
