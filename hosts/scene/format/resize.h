#pragma once

#include "format/scene.h"

namespace voxam::inline format {

/// Changes the grid of a scene, also in its timeline. Everything keeps its place relative to the
/// plate, as closely as the new elements allow. If both sides change by the same factor, the plate
/// keeps its size in millimetres: the size of an element changes, and rings are scaled. Otherwise
/// the elements keep their size: rings move with the plate and keep their radii. Throws InputError
/// and changes nothing if the result would exceed a limit of scenes.
void resizeGrid(Scene& scene, int width, int height);

/// The element size that resizeGrid() gives a scene.
double resizedElementSize(const Scene& scene, int width, int height);

}  // namespace voxam::inline format
