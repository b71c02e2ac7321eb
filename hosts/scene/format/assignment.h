#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace voxam::inline format {

/// Replaces values of a JSON document. An assignment is a text such as "volumeFraction=0.4" or
/// "loads[0].fy=2". Its value is JSON, or otherwise a plain text. Missing keys are added, missing
/// elements of a list are not. Throws InputError naming the assignment.
void assign(nlohmann::json& document, const std::vector<std::string>& assignments);

}  // namespace voxam::inline format
