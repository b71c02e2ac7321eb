#include "format/area.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "format/grid.h"

namespace voxam::inline format {

bool Ring::contains(const Cell& cell) const {
    // A ring and the disc within it, or the ring around it, share no element: the inner radius
    // belongs to the ring, the outer one does not.
    const double distance = std::hypot(cell.x + 0.5 - x, cell.y + 0.5 - y);
    return distance >= inner && distance < outer;
}

Cells cellsOf(const Ring& ring, int width, int height) {
    const auto onGrid = [](double at, int size) {
        return static_cast<int>(std::clamp(at, 0.0, static_cast<double>(size)));
    };
    const int right = onGrid(std::ceil(ring.x + ring.outer), width);
    const int bottom = onGrid(std::ceil(ring.y + ring.outer), height);
    Cells cells;
    for (int x = onGrid(ring.x - ring.outer, width); x < right; ++x)
        for (int y = onGrid(ring.y - ring.outer, height); y < bottom; ++y)
            if (ring.contains({x, y})) cells.push_back({x, y});
    return cells;
}

Cells looseCells(const Area& area, int width, int height) {
    if (area.rings.empty()) return area.cells;
    Mask loose(width, height);
    mark(loose, area.cells);
    for (const Ring& ring : area.rings) mark(loose, cellsOf(ring, width, height), 0);
    mark(loose, area.covered);
    return cellsWith(loose);
}

Area joinedArea(const Cells& loose, std::vector<Ring> rings, int width, int height) {
    Mask isLoose(width, height);
    mark(isLoose, loose);
    Mask isInRing(width, height);
    for (const Ring& ring : rings) mark(isInRing, cellsOf(ring, width, height));
    Area area;
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y) {
            if (isLoose.at(x, y) == 0 && isInRing.at(x, y) == 0) continue;
            area.cells.push_back({x, y});
            if (isLoose.at(x, y) != 0 && isInRing.at(x, y) != 0) area.covered.push_back({x, y});
        }
    area.rings = std::move(rings);
    return area;
}

}  // namespace voxam::inline format
