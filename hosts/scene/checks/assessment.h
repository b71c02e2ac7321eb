#pragma once

#include <vector>

#include "checks/finding.h"
#include "checks/floating_parts.h"
#include "run/game.h"

/// What a design is worth.
struct Assessment {
    Score score;                         ///< of the design without its floating parts
    std::vector<FloatingPart> floating;  ///< left out
    Findings problems;                   ///< why it is not supported; empty when it is
    /// Everything is held, but the library's precision does not suffice for so slender parts on so
    /// many elements: a coarser design may have a score. The problems say so.
    bool isBeyondPrecision = false;
};

/// Scores a design of the grid's size or a whole multiple of it, under the scene's loads and
/// supports, without the parts that nothing holds.
Assessment assess(const Field& design, const Scene& scene);

/// Elements per edge of an element at which a design of so many cells per edge is drawn in black
/// and white: the finest of these and those below that stay within MAX_DRAWN_ELEMENTS.
int drawnRefinement(const Scene& scene, int refinement);

/// The same for a design of the resolution of the scene's picture.
inline int drawnRefinement(const Scene& scene) {
    return drawnRefinement(scene, scene.refinement());
}

/// The score of a black and white design takes a few tenths of a second up to this size.
constexpr int MAX_DRAWN_ELEMENTS = 60000;

/// The design that a picture of the material shows, in black and white: elements that are at least
/// half full are solid, the others void. `refinement` is the result's, per edge of an element.
Field drawnDesign(const Field& material, const Scene& scene, int refinement);
