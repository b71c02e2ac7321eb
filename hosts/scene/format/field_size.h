#pragma once

#include <cstddef>
#include <string>

namespace voxam::inline format {

/// What is wrong with columns * rows values for a grid, for the text of an error: empty when they
/// are width * height times the same whole number from 1 to `maxRefinement`.
std::string wrongSize(std::size_t columns, std::size_t rows, int width, int height,
                      int maxRefinement);

}  // namespace voxam::inline format
