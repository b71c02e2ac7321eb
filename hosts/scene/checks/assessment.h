#pragma once

#include <vector>

#include "checks/finding.h"
#include "checks/floating_parts.h"
#include "run/analysis.h"

namespace voxam::inline checks {

/// How stiff a design is. Valid if the design is supported.
struct Score {
    bool supported = false;
    double compliance = 0;  ///< the weighted sum of all load cases, see weightedCompliance()
    Field energies;         ///< share of each element in it; 0 in floating parts
};

/// The result of assess().
struct Assessment {
    Score score;                         ///< of the design without its floating parts
    std::vector<FloatingPart> floating;  ///< left out of the score
    Findings problems;                   ///< why the design is not supported; empty if it is
    std::vector<PlateState> states;      ///< of each load case, if supported and `withStates`
};

/// Analyses a design of the grid's size or a whole multiple of it, under the scene's loads and
/// supports, without the parts that no support holds. The stiffness of an element is its density
/// times the stiffness of solid material.
Assessment assess(const Field& design, const Scene& scene, bool withStates = false);

/// A design in black and white.
struct DrawnDesign {
    Field design;
    double level = 0.5;  ///< cells of at least this density are solid
};

/// The design that a picture of the material shows, in black and white. The level keeps the amount
/// of material, as closely as cells allow. It is 0.5 if the material is black and white already.
/// The result has `refinement` cells per edge of an element.
DrawnDesign drawnDesign(const Field& material, const Scene& scene, int refinement);

/// A design that has at most this share of the plate as material, and as much of it as possible.
DrawnDesign drawnDesign(const Field& material, const Scene& scene, int refinement, double share);

/// The refinement at which a design with `refinement` cells per edge of an element is drawn: the
/// same, or a smaller one that keeps to MAX_DRAWN_ELEMENTS.
int drawnRefinement(const Scene& scene, int refinement);

/// The refinement at which a design with the resolution of the scene's picture is drawn.
inline int drawnRefinement(const Scene& scene) {
    return drawnRefinement(scene, scene.refinement());
}

/// An analysis of this many elements takes about ten seconds and 3 GB.
constexpr int MAX_DRAWN_ELEMENTS = 1000000;

}  // namespace voxam::inline checks
