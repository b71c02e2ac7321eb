#pragma once

#include <cstddef>
#include <numeric>
#include <vector>

/// A rectangle of floats, row by row with the top row first: value (x, y) is at y * width + x, with
/// x counting columns from the left and y counting rows from the top.
struct Field {
    int width = 0;
    int height = 0;
    std::vector<float> values;

    Field() = default;
    Field(int columns, int rows, float value = 0)
        : width(columns),
          height(rows),
          values(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), value) {}

    float& at(int x, int y) { return values[index(x, y)]; }
    float at(int x, int y) const { return values[index(x, y)]; }

    bool operator==(const Field&) const = default;

private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

/// The same values column by column, the element order of the library.
inline std::vector<float> toElementOrder(const Field& field) {
    std::vector<float> values;
    values.reserve(field.values.size());
    for (int x = 0; x < field.width; ++x)
        for (int y = 0; y < field.height; ++y) values.push_back(field.at(x, y));
    return values;
}

/// The reverse of toElementOrder; `values` holds width * height floats.
inline Field fromElementOrder(const std::vector<float>& values, int width, int height) {
    Field field(width, height);
    std::size_t next = 0;
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y) field.at(x, y) = values[next++];
    return field;
}

/// Of all values.
inline double mean(const Field& field) {
    return std::accumulate(field.values.begin(), field.values.end(), 0.0) /
           static_cast<double>(field.values.size());
}
