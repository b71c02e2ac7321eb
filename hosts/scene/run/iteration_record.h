#pragma once

#include <voxam.h>

namespace voxam::inline run {

/// The numbers of an iteration.
struct IterationRecord {
    int iteration = 0;      ///< counts from 1, since the last start of the design
    double compliance = 0;  ///< of the design before the iteration
    double volume = 0;      ///< mean density of the picture, 0 to 1
    double change = 0;      ///< largest change of a density
    RuntimeStat times = {};
};

}  // namespace voxam::inline run
