#pragma once

#include <string>

#include "format/scene.h"

namespace voxam::inline checks {

/// The most memory that an optimisation takes.
struct MemoryNeed {
    double bytes = 0;
    std::string key;     ///< key of the scene file that causes most of it
    std::string advice;  ///< which values to lower
};

/// An estimate for an optimisation and the score of its design, good to about a quarter.
/// `keepsStates`: the score keeps the displacements and stresses of each load case.
MemoryNeed memoryNeed(const Scene& scene, bool keepsStates = false);

/// An estimate for the score of a design of this size.
MemoryNeed memoryNeedOfScore(const Field& design, const Scene& scene, bool keepsStates = false);

}  // namespace voxam::inline checks
