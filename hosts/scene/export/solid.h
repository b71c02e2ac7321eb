#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "export/outline.h"

namespace voxam::inline files {

/// A place in space: x to the right, y up, z towards the viewer.
using Corner = std::array<double, 3>;

/// Triangles that enclose a body, their corners counterclockwise as seen from outside. Each edge
/// belongs to two triangles, which run along it in opposite directions.
struct Solid {
    std::vector<Corner> corners;
    std::vector<std::array<std::size_t, 3>> triangles;  ///< indices of corners
};

/// The outline as a plate from z = 0 to z = thickness, the plate's bottom left corner at the
/// origin. Throws std::runtime_error if the triangulation fails.
Solid extrude(const Outline& outline, double thickness);

/// The enclosed volume.
double volume(const Solid& solid);

}  // namespace voxam::inline files
