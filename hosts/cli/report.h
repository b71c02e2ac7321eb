#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "checks/finding.h"
#include "design_exports.h"
#include "format/scene.h"
#include "verdict.h"

using namespace voxam;

/// The JSON objects that --json prints. A compliance that does not exist is null.
using Report = nlohmann::ordered_json;

/// "command", "scene", "title" and "grid", and "loadCases" if they have names or weights.
Report reportOn(const char* command, const Scene& scene);

/// A list of objects with "severity", "key" and "text".
Report reportOn(const Findings& findings);

/// A list of objects with "kind" and "name".
Report reportOn(const std::vector<WrittenFile>& files);

/// "compliance", and "compliances" of each load case, without its weight, if they are known.
Report reportOn(const Assessment& found);

/// The same members and "asDrawn": the same members and the level of the design as drawn. A design
/// that is black and white is its own design as drawn, at level 0.5.
Report reportOn(const Verdict& verdict);

/// Prints the object, even if standard output was silenced.
void print(const Report& report);
