#pragma once

#include "checks/finding.h"
#include "format/scene.h"

namespace voxam::inline checks {

/// An error if the supports outside passive void leave the plate free to move or to turn.
Findings findFreePlate(const Scene& scene);

/// An error if a node with material on the plane of symmetry is free to leave the plane: otherwise
/// the halves would separate. The material has the grid's size or a whole multiple of it.
Findings findOpenPlane(const Scene& scene, const Field& material);

/// Errors if no force of the load cases in use does any work: there is no force, forces are too
/// small, supports hold all of them, or they cancel one another. A warning if this is true of a
/// single load case.
Findings findIdleLoads(const Scene& scene);

/// A warning if the volume fraction is too small for a structure that reaches from the loads in use
/// to the supports.
Findings findThinVolume(const Scene& scene);

}  // namespace voxam::inline checks
