#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

/// One component of the design problem: a point load or a support at a node of the grid. A plain
/// value; it does not check what it stores, the solvers judge it against their grid.
///
/// Header only, so that a C++ host can make the records that printVoxamData takes without any
/// further exported symbols.
class TopologyOptimizationComponentData {
public:
    static constexpr int FLOATS_PER_RECORD = 5;

    int32_t x;         ///< column of the node, 0 .. elements in x
    int32_t y;         ///< row of the node, 0 .. elements in y
    float fx;          ///< load: force in x; support: fixed direction, 0 = x, 1 = y
    float fy;          ///< load: force in y; not read for a support
    int32_t loadCase;  ///< load: index of its load case, from 0

    /// Reads one record of five floats: x, y, fx, fy, load case. The integers are rounded to the
    /// nearest, halves away from zero.
    explicit TopologyOptimizationComponentData(const float* data)
        : x(nearestInteger(data[0])),
          y(nearestInteger(data[1])),
          fx(data[2]),
          fy(data[3]),
          loadCase(nearestInteger(data[4])) {}

    /// Reads `count` records from 5 * count floats, in order. A count below 1 or a null array gives
    /// an empty list.
    static std::vector<TopologyOptimizationComponentData> load(const float* data, int count) {
        std::vector<TopologyOptimizationComponentData> records;
        if (!data || count < 1) return records;
        records.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            records.emplace_back(data + std::size_t{FLOATS_PER_RECORD} * i);
        return records;
    }

    /// Writes the record's five floats to `out` and returns it. With null it writes to a new array,
    /// which the caller releases with delete[].
    float* toFloatArray(float* out) const {
        if (!out) out = new float[FLOATS_PER_RECORD];
        out[0] = static_cast<float>(x);
        out[1] = static_cast<float>(y);
        out[2] = fx;
        out[3] = fy;
        out[4] = static_cast<float>(loadCase);
        return out;
    }

    /// Prints nothing.
    void print() const {}

private:
    // What no 32-bit integer can hold, NaN included, becomes a number that is outside every grid.
    static int32_t nearestInteger(float value) {
        constexpr auto outside = std::numeric_limits<int32_t>::min();
        const double wide = value;
        if (!(std::fabs(wide) < -static_cast<double>(outside))) return outside;
        return static_cast<int32_t>(std::lround(wide));
    }
};
