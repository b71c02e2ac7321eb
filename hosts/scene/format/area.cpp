#include "format/area.h"

#include <cmath>

namespace voxam::inline format {

bool Ring::contains(const Cell& cell) const {
    // A ring and the disc within it, or the ring around it, share no element: the inner radius
    // belongs to the ring, the outer one does not.
    const double distance = std::hypot(cell.x + 0.5 - x, cell.y + 0.5 - y);
    return distance >= inner && distance < outer;
}

Cells cellsOf(const Ring& ring, int width, int height) {
    Cells cells;
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y)
            if (ring.contains({x, y})) cells.push_back({x, y});
    return cells;
}

}  // namespace voxam::inline format
