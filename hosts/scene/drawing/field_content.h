#pragma once

#include <string>
#include <vector>

#include "drawing/picture.h"
#include "run/views.h"

namespace voxam::inline drawing {

/// Shows a view of a design in its picture. `states` are those of the analysis in all load cases of
/// the scene; empty if the view did not need them. Returns an addition to the subtitle, such as
/// ",  load case 1: compliance 48.2", or an empty text.
std::string showField(ViewedField seen, const std::vector<PlateState>& states, const Scene& scene,
                      PictureContent& content);

}  // namespace voxam::inline drawing
