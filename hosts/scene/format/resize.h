#pragma once

#include "format/scene.h"

/// Changes the grid of a scene, also in its timeline. Everything keeps its place relative to the
/// plate, as well as the new elements allow. Throws InputError, before it changes anything, when a
/// list of elements would become too long.
void resizeGrid(Scene& scene, int width, int height);
