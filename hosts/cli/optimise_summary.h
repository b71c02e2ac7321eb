#pragma once

#include <string>

#include "checks/checks.h"
#include "optimisation_run.h"

using namespace voxam;

/// Prints the result of an optimisation. `result` belongs to its last design; it is ignored if no
/// iteration succeeded.
void printSummary(const OptimisationRun& run, const RunResult& result, const Findings& warnings);

/// "iteration 80,  compliance 43, as drawn 40.9,  volume 40.0 %".
std::string resultSubtitle(const OptimisationRun& run, const RunResult& result);
