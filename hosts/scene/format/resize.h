#pragma once

#include "format/scene.h"

namespace voxam::inline format {

/// Changes the grid of a scene, also in its timeline. Everything keeps its place relative to the
/// plate, as well as the new elements allow. Throws InputError, before it changes anything, if
/// the result would be beyond a limit of scenes.
void resizeGrid(Scene& scene, int width, int height);

}  // namespace voxam::inline format
