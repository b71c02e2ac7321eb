// The loads, supports and cells of test plates, as a host hands them over. Independent of the
// library.
#pragma once

#include <cstddef>
#include <vector>

namespace test {

/// Load or support records as the flat array that a host hands over.
struct Records {
    std::vector<float> floats;

    Records& add(float x, float y, float fx, float fy = 0, float loadCase = 0) {
        floats.insert(floats.end(), {x, y, fx, fy, loadCase});
        return *this;
    }
    int count() const { return static_cast<int>(floats.size() / 5); }
    const float* data() const { return floats.data(); }
};

/// Holds the left edge in x and its upper end in y: a stretched plate contracts unhindered.
inline Records slidingLeftEdge(int nely) {
    Records supports;
    for (int y = 0; y <= nely; ++y) supports.add(0, static_cast<float>(y), 0);
    return supports.add(0, 0, 1);
}

/// Uniform tension of the right edge as consistent nodal loads: half a share at the corners.
inline Records tension(int nelx, int nely, float stress) {
    Records loads;
    for (int y = 0; y <= nely; ++y) {
        const float share = y == 0 || y == nely ? 0.5F : 1.0F;
        loads.add(static_cast<float>(nelx), static_cast<float>(y), share * stress);
    }
    return loads;
}

/// What a host sends to the optimiser in one update.
struct Settings {
    Records loads;
    Records supports;
    float volumeFraction = 0.5F;
    std::vector<short> passive = {0, 0, 0};
    std::vector<char> loadCases = {0};
    std::vector<short> blob = {0};
};

/// A plate whose left edge is held, pulled down in the middle of the right edge.
inline Settings cantilever(int nelx, int nely) {
    Settings settings;
    for (int y = 0; y <= nely; ++y) {
        for (const float direction : {0.0F, 1.0F}) {
            settings.supports.add(0, static_cast<float>(y), direction);
        }
    }
    const int middle = nely / 2;
    settings.loads.add(static_cast<float>(nelx), static_cast<float>(middle), 0, 1);
    return settings;
}

/// Adds the cells left <= x < right, top <= y < bottom to a record, which counts them at `counter`.
inline void addBlock(std::vector<short>& record, std::size_t counter, int left, int right, int top,
                     int bottom) {
    for (int x = left; x < right; ++x) {
        for (int y = top; y < bottom; ++y, ++record[counter]) {
            record.insert(record.end(), {static_cast<short>(x), static_cast<short>(y)});
        }
    }
}

}  // namespace test
