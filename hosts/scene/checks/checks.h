#pragma once

#include "checks/assessment.h"
#include "checks/finding.h"
#include "format/scene.h"

namespace voxam::inline checks {

/// What can be said of a scene before it is optimised. An error makes the run pointless; what a
/// change of the timeline brings about is a warning only, because a later one may mend it.
/// `keepsStates`: the score of the result keeps the states of the plate, which takes more memory.
Findings checkBeforeOptimisation(const Scene& scene, bool keepsStates = false);

/// What can be said of a scene before its design is scored.
Findings checkBeforeScore(const Scene& scene, bool keepsStates = false);

/// What can be said of a scene without any run: before it is optimised and before its design is
/// scored, whichever it can be, and why a score would find its design unsupported, as far as that
/// shows without an analysis.
Findings checkScene(const Scene& scene);

/// Errors in what acts on the plate and in what is asked of the design, as the scene stands,
/// whatever its timeline says.
Findings checkSettings(const Scene& scene);

/// A warning when the design would have more detail than its elements can judge.
Findings findTooFine(const Scene& scene);

/// An error when an optimisation would take more memory than there is. Loads and supports do not
/// matter for it.
Findings findTooLarge(const Scene& scene);

/// What an optimisation came to.
struct RunResult {
    double compliance = 0;  ///< as the optimiser reports it
    double volume = 0;      ///< of the picture, 0 to 1
    Field drawn;            ///< the design in black and white
    Assessment assessment;  ///< of the drawn design
    double level = 0.5;     ///< of the drawn design: cells of at least this density are solid
};

/// Warnings about a design that is not what it seems to be.
Findings checkResult(const RunResult& result, const Scene& scene);

}  // namespace voxam::inline checks
