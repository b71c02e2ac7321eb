#pragma once

#include "options.h"

/// Optimises the design of a scene, tells how it gets on, and sums up at the end. Returns the exit
/// status: 0; 1 when the library could not go on, or warnings count and there was one; 130 or 143
/// after SIGINT or SIGTERM (129 after SIGHUP), which end the run after the current iteration.
/// Throws InputError for a fault of the input.
int runOptimise(const OptimiseOptions& options);
