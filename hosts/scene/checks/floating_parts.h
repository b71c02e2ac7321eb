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

/// The parts of the material that an analysis found to be loose. Elements that share an edge or a
/// corner belong to one part. Ordered by the first element from the top left.
std::vector<FloatingPart> floatingParts(const Field& loose, int refinement);

/// The design without these parts.
Field without(Field design, const std::vector<FloatingPart>& parts);

/// Errors for the loads that act where the design has no material, or material of the floating
/// parts only; at a node that is held in the direction of the force they do no harm.
Findings findLooseLoads(const Field& design, const std::vector<FloatingPart>& floating,
                        const Scene& scene);

/// "2 parts are attached to nothing, 7.5 elements of the grid; the first at x 12.25, y 0": sizes
/// and places are in elements of the scene. There is at least one part.
std::string describe(const std::vector<FloatingPart>& parts);

}  // namespace voxam::inline checks
