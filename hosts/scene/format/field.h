#pragma once

#include <numeric>
#include <vector>

#include "format/grid.h"

namespace voxam::inline format {

/// Numbers of the elements of a grid, or of cells that are finer.
using Field = Grid<float>;

/// The same values column by column, the element order of the library.
inline std::vector<float> toElementOrder(const Field& field) {
    std::vector<float> values;
    values.reserve(field.values.size());
    for (int x = 0; x < field.width; ++x)
        for (int y = 0; y < field.height; ++y) values.push_back(field.at(x, y));
    return values;
}

/// The reverse of toElementOrder; `values` contains width * height floats.
inline Field fromElementOrder(const std::vector<float>& values, int width, int height) {
    Field field(width, height);
    std::size_t next = 0;
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y) field.at(x, y) = values[next++];
    return field;
}

inline double sum(const Field& field) {
    return std::accumulate(field.values.begin(), field.values.end(), 0.0);
}

inline double mean(const Field& field) {
    return sum(field) / static_cast<double>(field.values.size());
}

}  // namespace voxam::inline format
