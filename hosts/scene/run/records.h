#pragma once

#include <vector>

#include "format/scene.h"

namespace voxam::inline run {

/// The library's records of five floats each, one for each node of a load. Forces are divided by
/// `forceUnit`.
std::vector<float> loadRecords(const Settings& settings, double forceUnit = 1);

/// The largest force of a scene and its timeline, the divisor of forces that are passed to the
/// library: some of its thresholds suit forces of about 1. It is 1 if there is no force.
double forceUnit(const Scene& scene);

/// The library's records of five floats each, one for each held direction of each node.
std::vector<float> supportRecords(const Settings& settings);

/// The library's record of a list of elements: their number, and then x and y of each.
std::vector<short> cellRecords(const Area& area);

/// The library's record of passive elements: the three numbers, and then the elements of each kind.
std::vector<short> passiveRecords(const PassiveAreas& passive);

}  // namespace voxam::inline run
