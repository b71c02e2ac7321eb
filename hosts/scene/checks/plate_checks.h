#pragma once

#include "checks/finding.h"
#include "format/scene.h"

namespace voxam::inline checks {

/// An error when the supports outside passive void leave the plate free to move or to turn.
Findings findFreePlate(const Scene& scene);

/// An error when a node on the plane of symmetry that has material is free to leave the plane: the
/// other half would part from this one. The material is of the grid's size or a whole multiple of
/// it.
Findings findOpenPlane(const Scene& scene, const Field& material);

/// Errors when no force of the load cases in use does any work: there is none, or too small a one,
/// supports hold all of them, or they cancel one another. A warning for a single load case of which
/// that is true.
Findings findIdleLoads(const Scene& scene);

}  // namespace voxam::inline checks
