#pragma once

#include <string>

#include "checks/checks.h"
#include "optimisation_run.h"

using namespace voxam;

/// Prints what an optimisation came to. The result is that of its last design; without a record
/// there is none.
void printSummary(const OptimisationRun& run, const RunResult& result, const Findings& warnings);

/// "iteration 80,  compliance 43, as drawn 40.9,  volume 40.0 %".
std::string resultSubtitle(const OptimisationRun& run, const RunResult& result);
