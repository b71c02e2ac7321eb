#pragma once

#include <optional>

#include "checks/assessment.h"

using namespace voxam;

/// A design with greys in black and white, and what that is worth.
struct DrawnVerdict {
    DrawnDesign drawn;
    Assessment assessment;
};

/// What a design is worth as it is and, where it has greys, as drawn.
struct Verdict {
    Assessment found;
    std::optional<DrawnVerdict> drawn;  ///< none when the design is black and white
    Findings warnings;
    double seconds = 0;  ///< that the analyses took

    /// Of the design as drawn, which is the design itself when it is black and white.
    const Assessment& asDrawn() const { return drawn ? drawn->assessment : found; }
};

/// Judges the design of a scene, which has one.
Verdict judge(const Scene& scene, bool withStates = false);
