#pragma once

#include <nlohmann/json.hpp>

#include "format/area.h"
#include "format/range.h"

namespace voxam::inline format {

/// What the readers of areas read back as the same area.
nlohmann::ordered_json writeArea(const Area& area, int width, int height);
nlohmann::ordered_json writePassiveAreas(const PassiveAreas& passive, int width, int height);

/// A number, or two where the range has more than one.
nlohmann::ordered_json writeRange(const Range& range);

/// Without a fraction where there is none.
nlohmann::ordered_json writeNumber(double value);

}  // namespace voxam::inline format
