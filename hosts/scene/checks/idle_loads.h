#pragma once

#include "checks/finding.h"
#include "format/scene.h"

/// Errors when no force of the load cases in use does any work: there is none, or too small a one,
/// supports hold all of them, or they cancel one another. A warning for a single load case of which
/// that is true.
Findings findIdleLoads(const Scene& scene);
