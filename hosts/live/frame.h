#pragma once

#include <voxam.h>

#include <cstdint>
#include <optional>
#include <string>

#include "checks/assessment.h"
#include "checks/finding.h"
#include "format/area.h"
#include "format/field.h"

/// What is told about an iteration.
struct IterationNumbers {
    std::uint64_t revision = 0;  ///< of the settings that it was computed with
    int iteration = 0;           ///< from 1, since the design last started afresh
    double compliance = 0;       ///< of the design that the iteration started from
    double volume = 0;           ///< mean density of the picture, 0 to 1
    double change = 0;           ///< largest change of a density
    RuntimeStat times = {};
};

/// A picture of the design.
struct Frame {
    Field material;            ///< empty before the first picture
    int refinement = 1;        ///< cells of the picture per edge of an element
    std::optional<Area> blob;  ///< where a moving blob has got to
    IterationNumbers numbers;
};

/// A text with which the library refuses to iterate, or none.
struct LibraryText {
    std::string text;
    std::uint64_t revision = 0;
};

/// What a design in black and white is worth.
struct ScoreResult {
    std::uint64_t revision = 0;
    Field design;
    Assessment assessment;
    Findings warnings;  ///< of the optimiser's design: where it is not what it seems to be

    bool isSupported() const { return assessment.problems.empty(); }
};

/// Material of a design, in percent of all elements.
inline double materialOf(const Field& design) {
    return design.values.empty() ? 0 : 100 * mean(design);
}
