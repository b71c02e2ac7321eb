#pragma once

#include <vector>

#include "checks/finding.h"
#include "checks/floating_parts.h"
#include "run/analysis.h"

namespace voxam::inline checks {

/// How stiff a design is. Valid when the design is supported.
struct Score {
    bool supported = false;
    double compliance = 0;  ///< force times displacement, the sum of all load cases
    Field energies;         ///< share of each element; 0 in parts that are left out
};

/// What a design is worth.
struct Assessment {
    Score score;                         ///< of the design without its floating parts
    std::vector<FloatingPart> floating;  ///< left out
    Findings problems;                   ///< why it is not supported; empty when it is
    std::vector<PlateState> states;      ///< of each load case, when supported and asked for
};

/// Analyses a design of the grid's size or a whole multiple of it, under the scene's loads and
/// supports, without the parts that nothing holds. An element has its density times the stiffness
/// of solid material.
Assessment assess(const Field& design, const Scene& scene, bool withStates = false);

/// A design in black and white.
struct DrawnDesign {
    Field design;
    double level = 0.5;  ///< cells of at least this density are solid
};

/// The design that a picture of the material shows, in black and white. The level is such that the
/// amount of material stays the same, as nearly as cells allow; 0.5 where the material is black and
/// white already. `refinement` is the result's, per edge of an element.
DrawnDesign drawnDesign(const Field& material, const Scene& scene, int refinement);

/// The same with as much material as this share of the plate, and no more than that.
DrawnDesign drawnDesign(const Field& material, const Scene& scene, int refinement, double share);

/// Elements per edge of an element at which a design of so many cells per edge is drawn: as many,
/// or fewer where that would be more than MAX_DRAWN_ELEMENTS.
int drawnRefinement(const Scene& scene, int refinement);

/// The same for a design of the resolution of the scene's picture.
inline int drawnRefinement(const Scene& scene) {
    return drawnRefinement(scene, scene.refinement());
}

/// An analysis of so many elements takes some ten seconds and 3 GB.
constexpr int MAX_DRAWN_ELEMENTS = 1000000;

}  // namespace voxam::inline checks
