#pragma once

#include "checks/finding.h"
#include "format/scene.h"

/// An error when a node on the plane of symmetry that has material is free to leave the plane: the
/// other half would part from this one. The material is of the grid's size or a whole multiple of
/// it.
Findings findOpenPlane(const Scene& scene, const Field& material);
