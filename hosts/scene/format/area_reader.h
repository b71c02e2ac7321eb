#pragma once

#include "format/area.h"
#include "format/json_value.h"

namespace voxam::inline format {

/// Above the largest distance between two points of the largest grid.
constexpr double MAX_RADIUS = 2000;

/// Reads a list of rectangles, discs and rings.
Area readArea(const JsonValue& value, int width, int height);

/// Reads a drawing, or a list as above for each kind.
PassiveAreas readPassiveAreas(const JsonValue& value, int width, int height);

}  // namespace voxam::inline format
