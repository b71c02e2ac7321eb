#pragma once

#include <vector>

#include "run/iteration_record.h"

using namespace voxam;

/// The time of a part of the iterations.
struct PartTime {
    const char* name;  ///< of the part; the last one is the whole iteration
    double share;      ///< of the total, 0 to 1
    double median;     ///< milliseconds
};

/// The parts of an iteration. `records` must not be empty.
std::vector<PartTime> partTimes(const std::vector<IterationRecord>& records);

/// Prints these times.
void printTimeTable(const std::vector<PartTime>& times);
