#pragma once

#include <filesystem>
#include <string>

#include "checks/finding.h"

using namespace voxam;

/// Throws InputError for the first error among the findings about a scene, and returns the
/// warnings.
Findings warningsOf(const Findings& findings, const std::filesystem::path& scene);

/// Prints warnings on standard error.
void complainOf(const Findings& warnings, const std::filesystem::path& scene);

/// Why the library refuses to iterate, in plain words. Set `isTorn` if the library iterated the
/// same problem before: then its design no longer connects the loads with the supports.
std::string explainedRefusal(const std::string& text, bool isTorn);
