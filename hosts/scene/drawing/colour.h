#pragma once

#include <array>
#include <cstddef>

namespace voxam::inline drawing {

/// Red, green and blue, each from 0 to 1.
using Colour = std::array<double, 3>;

inline Colour mix(const Colour& from, const Colour& to, double share) {
    Colour result{};
    for (std::size_t i = 0; i < result.size(); ++i) result[i] = from[i] + share * (to[i] - from[i]);
    return result;
}

}  // namespace voxam::inline drawing
