#pragma once

#include <nlohmann/json.hpp>

#include "format/area.h"
#include "format/range.h"

namespace voxam::inline format {

/// JSON that readArea() and readPassiveAreas() read back as the same areas.
nlohmann::ordered_json writeArea(const Area& area, int width, int height);
nlohmann::ordered_json writePassiveAreas(const PassiveAreas& passive, int width, int height);

/// One number, or [from, to] if the range contains several.
nlohmann::ordered_json writeRange(const Range& range);

/// A whole number is written without a fraction.
nlohmann::ordered_json writeNumber(double value);

}  // namespace voxam::inline format
