#pragma once

#include "options.h"

/// Scores several designs and prints their compliances, relative to the first one. Returns the exit
/// status: 0; 1 if a design is not supported. Throws InputError for a fault of the input.
int runCompare(const CompareOptions& options);
