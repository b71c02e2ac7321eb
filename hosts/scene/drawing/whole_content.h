#pragma once

#include "drawing/picture.h"

namespace voxam::inline drawing {

/// The same content for the whole of a symmetric plate, for a picture of wholeOf() its scene.
PictureContent wholeOf(const PictureContent& content, Symmetry symmetry);

}  // namespace voxam::inline drawing
