#pragma once

#include "format/scene.h"

namespace voxam::inline format {

/// Makes a change of the timeline in a scene. A restart only changes the detail here: the optimiser
/// has to be restarted as well.
void apply(const Change& change, Scene& scene);

}  // namespace voxam::inline format
