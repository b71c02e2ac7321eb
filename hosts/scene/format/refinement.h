#pragma once

#include "format/scene.h"

namespace voxam::inline format {

/// The same plate, loads and supports on a grid that is `factor` times as fine, for scores: passive
/// areas, blob, densities and timeline are left out. A load or support of a range of nodes covers
/// the new nodes between them as well.
Scene refined(const Scene& scene, int factor);

/// The same scene in which no loads but those of the load cases in use have a force. All keep their
/// number.
Scene withLoadsInUse(Scene scene);

/// Elements per edge of an element of the scene that a design has which is a whole multiple of its
/// grid.
inline int refinementOf(const Field& design, const Scene& scene) {
    return design.width / scene.width;
}

}  // namespace voxam::inline format
