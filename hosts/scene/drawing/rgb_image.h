#pragma once

#include <cstdint>
#include <vector>

namespace voxam::inline drawing {

/// A picture of width * height pixels, three bytes (red, green, blue) each, row by row from the
/// top.
struct RgbImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

}  // namespace voxam::inline drawing
