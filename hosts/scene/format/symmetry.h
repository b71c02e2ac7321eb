#pragma once

#include "format/scene.h"

namespace voxam::inline format {

/// The whole of a plate of which a scene describes one half: the grid, loads, supports, passive
/// elements and blob of both halves. Supports that only stand for the plane of symmetry are left
/// out, and a load on the plane counts twice. Without a symmetry the scene as it is.
Scene wholeOf(const Scene& scene);

/// The same for values of its elements, or of any whole number of cells per edge of an element.
Field wholeOf(const Field& half, Symmetry symmetry);

/// The same for values of its nodes, which both halves share on the plane. `sign` is that of the
/// values of the other half: -1 for displacements across the plane.
Field wholeOfNodes(const Field& half, Symmetry symmetry, float sign);

/// The half of a whole plate that a scene describes.
Field halfOf(const Field& whole, Symmetry symmetry);

/// Whether the plane is upright, so that the other half lies to the left or to the right.
inline bool isUpright(Symmetry symmetry) {
    return symmetry == Symmetry::LEFT || symmetry == Symmetry::RIGHT;
}

}  // namespace voxam::inline format
