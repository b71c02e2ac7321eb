#pragma once

#include <vector>

#include "run/iteration_record.h"

using namespace voxam;

/// Where the time of the iterations went.
struct PartTime {
    const char* name;  ///< of a part of an iteration; the last one is the whole iteration
    double share;      ///< of the total, 0 to 1
    double median;     ///< milliseconds
};

/// The parts of an iteration. There is at least one record.
std::vector<PartTime> partTimes(const std::vector<IterationRecord>& records);

/// Prints these times.
void printTimeTable(const std::vector<PartTime>& times);
