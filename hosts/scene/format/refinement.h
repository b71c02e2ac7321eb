#pragma once

#include <cstddef>
#include <string>

#include "format/scene.h"

namespace voxam::inline format {

/// The same plate, loads and supports on a grid that is `factor` times as fine, for scores: passive
/// areas, blob, densities and timeline are left out. A load or support of a range of nodes covers
/// the new nodes between them as well.
Scene refined(const Scene& scene, int factor);

/// A copy of the scene in which loads of unused load cases have force 0. All loads keep their
/// index.
Scene withLoadsInUse(Scene scene);

/// How many cells of the design lie along an edge of an element. The design's size must be a whole
/// multiple of the grid.
inline int refinementOf(const Field& design, const Scene& scene) {
    return design.width / scene.width;
}

/// What is wrong with a design of columns * rows cells for a grid, for the text of an error. Empty
/// if the size is width * height times the same whole number from 1 to `maxRefinement`.
std::string wrongSize(std::size_t columns, std::size_t rows, int width, int height,
                      int maxRefinement);

}  // namespace voxam::inline format
