#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace voxam::inline format {

/// Replaces values of a JSON document as texts such as "volumeFraction=0.4" or "loads[0].fy=2" say.
/// The value is JSON, or else a plain text. A key that the document lacks is added, an element of a
/// list is not. Throws InputError naming the assignment.
void assign(nlohmann::json& document, const std::vector<std::string>& assignments);

}  // namespace voxam::inline format
