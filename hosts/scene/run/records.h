#pragma once

#include <vector>

#include "format/scene.h"

namespace voxam::inline run {

/// The library's records of five floats each, one for each node of a load.
std::vector<float> loadRecords(const Scene& scene);

/// The same records for the optimiser: forces are multiplied by the square root of the weight of
/// their load case and divided by `forceUnit`. The optimiser sums the compliances of all load
/// cases; a compliance grows with the square of the forces, so the sum is the weighted one.
std::vector<float> weightedLoadRecords(const Scene& scene, double forceUnit);

/// The largest weighted force of a scene and its timeline, the divisor of forces that are passed to
/// the optimiser: some of its thresholds suit forces of about 1. It is 1 if there is no force.
double forceUnit(const Scene& scene);

/// The library's records of five floats each, one for each held direction of each node.
std::vector<float> supportRecords(const Settings& settings);

/// The library's record of a list of elements: their number, and then x and y of each.
std::vector<short> cellRecords(const Area& area);

/// The library's record of passive elements: the three numbers, and then the elements of each kind.
std::vector<short> passiveRecords(const PassiveAreas& passive);

}  // namespace voxam::inline run
