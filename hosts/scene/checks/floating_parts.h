#pragma once

#include <vector>

#include "checks/finding.h"
#include "format/scene.h"

namespace voxam::inline checks {

/// Connected material that the supports do not hold.
struct FloatingPart {
    Cells cells;         ///< of the design's own grid, top row first
    int refinement = 1;  ///< cells of that grid per edge of an element of the scene
};

/// The connected parts of loose material. Elements that share an edge or a corner belong to one
/// part. Parts are ordered by their first element from the top left.
std::vector<FloatingPart> floatingParts(const Field& loose, int refinement);

/// The design without these parts.
Field without(Field design, const std::vector<FloatingPart>& parts);

/// Errors for loads on nodes without material, or with material of floating parts only. Forces on
/// held degrees of freedom are ignored.
Findings findLooseLoads(const Field& design, const std::vector<FloatingPart>& floating,
                        const Scene& scene);

/// Such as "2 parts are attached to nothing, 7.5 elements of the grid; the first at x 12.25, y 0".
/// Sizes and places are in elements of the scene. `parts` must not be empty.
std::string describe(const std::vector<FloatingPart>& parts);

}  // namespace voxam::inline checks
