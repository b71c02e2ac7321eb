#pragma once

#include <filesystem>

#include "checks/finding.h"

/// Throws InputError for the first error among the findings about a scene, and returns the
/// warnings.
Findings warningsOf(const Findings& findings, const std::filesystem::path& scene);

/// Tells warnings on standard error.
void complainOf(const Findings& warnings, const std::filesystem::path& scene);
