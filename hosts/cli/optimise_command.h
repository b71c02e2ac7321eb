#pragma once

#include "options.h"

/// Optimises the design of a scene, shows the progress and prints a summary. Returns the exit
/// status: 0; 1 if the library refused the last iteration, or warnings count and there was one; 130
/// or 143 after SIGINT or SIGTERM (129 after SIGHUP), which end the run after the current
/// iteration. Throws InputError for a fault of the input.
int runOptimise(const OptimiseOptions& options);
