#pragma once

#include "options.h"

/// Scores the design of a scene without its floating parts, prints the result, and draws it if the
/// options say so. Returns the exit status: 0; 1 if the design does not carry the loads to the
/// supports, or warnings count and there was one. Throws InputError for a fault of the input, and
/// then writes no picture.
int runScore(const ScoreOptions& options);
