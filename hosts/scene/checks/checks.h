#pragma once

#include "checks/assessment.h"
#include "checks/finding.h"
#include "format/scene.h"

namespace voxam::inline checks {

/// Findings about a scene before it is optimised. An error makes the run pointless. A fault caused
/// by a change of the timeline is only a warning, because a later change may fix it. `keepsStates`:
/// the score of the result keeps the states of the plate, which takes more memory.
Findings checkBeforeOptimisation(const Scene& scene, bool keepsStates = false);

/// Findings about a scene before its design is scored.
Findings checkBeforeScore(const Scene& scene, bool keepsStates = false);

/// Findings about a scene without any run: those of the optimisation and of the score, as far as
/// the scene allows them, and reasons why a score would find its design unsupported that need no
/// analysis.
Findings checkScene(const Scene& scene);

/// Errors in the settings of the scene itself. The timeline is not checked.
Findings checkSettings(const Scene& scene);

/// A warning if the design has more detail than its elements can judge.
Findings findTooFine(const Scene& scene);

/// An error if an optimisation would take more memory than there is. Loads and supports do not
/// matter.
Findings findTooLarge(const Scene& scene);

/// The result of an optimisation.
struct RunResult {
    double compliance = 0;  ///< as the optimiser reports it
    double volume = 0;      ///< of the picture, 0 to 1
    Field drawn;            ///< the design in black and white
    Assessment assessment;  ///< of the drawn design
    double level = 0.5;     ///< of the drawn design: cells of at least this density are solid
};

/// Warnings about a design that, as drawn, is not supported, has loose parts, is much less stiff,
/// or does not have the scene's volume fraction.
Findings checkResult(const RunResult& result, const Scene& scene);

}  // namespace voxam::inline checks
