#pragma once

#include <vector>

#include "run/iteration_record.h"

/// Prints where the time of the iterations went: for each part of an iteration its share of the
/// total and its median. There is at least one record.
void printTimeTable(const std::vector<IterationRecord>& records);
