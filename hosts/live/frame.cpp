#include "frame.h"

#include <algorithm>
#include <cmath>
#include <numeric>

Area blobOf(const Frame& frame) {
    Area area;
    const int width = frame.columns / frame.refinement;
    const int height = frame.rows / frame.refinement;
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y)
            if (frame.blob[static_cast<std::size_t>(y * width + x)] != 0)
                area.cells.push_back({x, y});
    return area;
}

namespace {

/// Mean density of each element.
Field elementDensities(const Frame& frame) {
    Field densities(frame.columns / frame.refinement, frame.rows / frame.refinement);
    const auto cells = static_cast<float>(frame.refinement * frame.refinement);
    const float* cell = frame.picture.data();
    for (int y = 0; y < frame.rows; ++y)
        for (int x = 0; x < frame.columns; ++x)
            densities.at(x / frame.refinement, y / frame.refinement) += (1 - *cell++) / cells;
    return densities;
}

}  // namespace

Field designAsDrawn(const Frame& frame) {
    const Field densities = elementDensities(frame);
    const auto& values = densities.values;
    const double material = std::accumulate(values.begin(), values.end(), 0.0);
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return values[a] > values[b]; });
    order.resize(static_cast<std::size_t>(std::lround(material)));
    Field design(densities.width, densities.height);
    for (const std::size_t element : order) design.values[element] = 1;
    return design;
}

double materialOf(const Field& design) {
    if (design.values.empty()) return 0;
    return 100 * std::accumulate(design.values.begin(), design.values.end(), 0.0) /
           static_cast<double>(design.values.size());
}
