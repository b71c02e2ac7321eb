#pragma once

#include "options.h"

/// Scores several designs and prints what they are worth, the first one as the measure. Returns the
/// exit status: 0; 1 when a design is not supported. Throws InputError for a fault of the input.
int runCompare(const CompareOptions& options);
