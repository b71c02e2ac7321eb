#pragma once

#include <string>

#include "format/scene.h"

namespace voxam::inline checks {

/// What an optimisation takes at most.
struct MemoryNeed {
    double bytes = 0;
    std::string key;     ///< of the scene file: what takes most of it
    std::string advice;  ///< what to lower
};

/// An estimate for an optimisation and the score of what comes out, good to a quarter or so.
/// `keepsStates`: the score keeps the displacements and stresses of each load case.
MemoryNeed memoryNeed(const Scene& scene, bool keepsStates = false);

/// The same for the score of a design of this size.
MemoryNeed memoryNeedOfScore(const Field& design, const Scene& scene, bool keepsStates = false);

}  // namespace voxam::inline checks
