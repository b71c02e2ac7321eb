#pragma once

#include "format/scene.h"

namespace voxam::inline format {

/// The whole plate of a scene that describes one half of it: the grid, loads, supports, passive
/// elements and blob of both halves. Supports that only represent the plane of symmetry are left
/// out, and a load on the plane counts twice. A scene without symmetry is returned unchanged.
Scene wholeOf(const Scene& scene);

/// Values of the whole plate from values of the half, with any whole number of cells per edge of an
/// element.
Field wholeOf(const Field& half, Symmetry symmetry);

/// Values of the nodes of the whole plate from those of the half. Both halves share the nodes on
/// the plane. The values of the other half are multiplied by `sign`: -1 for displacements across
/// the plane.
Field wholeOfNodes(const Field& half, Symmetry symmetry, float sign);

/// The half of a whole plate that a scene describes.
Field halfOf(const Field& whole, Symmetry symmetry);

/// Whether the plane is upright, so that the other half lies to the left or to the right.
inline bool isUpright(Symmetry symmetry) {
    return symmetry == Symmetry::LEFT || symmetry == Symmetry::RIGHT;
}

}  // namespace voxam::inline format
