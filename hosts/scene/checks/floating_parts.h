#pragma once

#include <vector>

#include "checks/finding.h"
#include "format/scene.h"

/// Connected material that the supports do not hold.
struct FloatingPart {
    Cells cells;         ///< of the design's own grid, top row first
    int refinement = 1;  ///< cells of that grid per edge of an element of the scene
};

/// Finds the material (elements of a density above 0) that the supports leave free to move, because
/// nothing joins it to what is held, or no more than a corner that it can turn about. The design is
/// of the grid's size or a whole multiple of it. Ordered by the first element from the top left.
///
/// Elements that share a corner only are hinged. A design in which more than some hundreds of
/// pieces hang together by hinges in a way that is not plain counts as held there.
std::vector<FloatingPart> findFloatingParts(const Field& design, const Scene& scene);

/// The design without these parts.
Field without(Field design, const std::vector<FloatingPart>& parts);

/// Errors for the loads that pull where the design has no material, or material of the floating
/// parts only; at a node that is held in the direction of the force they do no harm.
Findings findLooseLoads(const Field& design, const std::vector<FloatingPart>& floating,
                        const Scene& scene);

/// "2 parts that hang on nothing, 7.5 elements of the grid; the first at x 12.25, y 0": sizes and
/// places are in elements of the scene. There is at least one part.
std::string describe(const std::vector<FloatingPart>& parts);
