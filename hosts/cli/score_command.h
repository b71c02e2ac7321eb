#pragma once

#include "options.h"

/// Scores the design of a scene without the parts that nothing holds, and prints the result; draws
/// it when asked to. Returns the exit status: 0; 1 when the design does not carry the loads to
/// supports that hold it, or warnings count and there was one. Throws InputError for a fault of the
/// input, and then writes no picture.
int runScore(const ScoreOptions& options);
