#pragma once

#include "options.h"

/// Makes all checks of a scene that voxam score and voxam optimise make before they run, and prints
/// every finding. Returns the exit status: 0; 1 if warnings count and there was one; 2 for an
/// error. Throws InputError if the scene cannot be read.
int runCheck(const CommonOptions& options);
