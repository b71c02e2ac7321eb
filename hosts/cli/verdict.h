#pragma once

#include <optional>

#include "checks/assessment.h"

using namespace voxam;

/// A design with greys in black and white, and its assessment.
struct DrawnVerdict {
    DrawnDesign drawn;
    Assessment assessment;
};

/// The assessment of a design with its greys and, if it has greys, as drawn.
struct Verdict {
    Assessment found;
    std::optional<DrawnVerdict> drawn;  ///< empty if the design is black and white
    Findings warnings;
    double seconds = 0;  ///< for the analyses

    /// The assessment of the design as drawn. A black and white design is drawn as it is.
    const Assessment& asDrawn() const { return drawn ? drawn->assessment : found; }
};

/// Judges the design of a scene that has densities.
Verdict judge(const Scene& scene, bool withStates = false);
