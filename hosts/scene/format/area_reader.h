#pragma once

#include "format/area.h"
#include "format/json_value.h"

namespace voxam::inline format {

/// The farthest that an element can lie from a point of the largest grid, and a bit more.
constexpr double MAX_RADIUS = 2000;

/// Reads a list of rectangles, discs and rings.
Area readArea(const JsonValue& value, int width, int height);

/// Reads a drawing, or a list as above for each kind.
PassiveAreas readPassiveAreas(const JsonValue& value, int width, int height);

}  // namespace voxam::inline format
