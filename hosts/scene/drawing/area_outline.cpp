#include "drawing/area_outline.h"

#include <algorithm>
#include <cmath>

namespace voxam::inline drawing {

namespace {

// Distance of a point from the centre of the element that it lies in, at most, and a little more: a
// point so much within a circle lies in an element of the disc, one so much outside in no such one.
constexpr double HALF_DIAGONAL = 0.7072;

constexpr double CHORD = 0.25;  // elements

class AreaOutline {
public:
    AreaOutline(const Area& outlined, int gridWidth, int gridHeight)
        : area(outlined), width(gridWidth), height(gridHeight) {}

    std::vector<std::array<GridPoint, 2>> lines() {
        for (const Cell& cell : area.cells) {
            addEdge(cell, {-1, 0});
            addEdge(cell, {1, 0});
            addEdge(cell, {0, -1});
            addEdge(cell, {0, 1});
        }
        for (const Ring& ring : area.rings) {
            addCircle(ring, ring.outer, 1);
            if (ring.inner > 0) addCircle(ring, ring.inner, -1);
        }
        return std::move(found);
    }

private:
    bool contains(const Cell& cell) const {
        return std::binary_search(area.cells.begin(), area.cells.end(), cell);
    }

    /// Unless a circle is there to show it.
    void addEdge(const Cell& cell, const Cell& side) {
        const Cell beyond = {cell.x + side.x, cell.y + side.y};
        if (contains(beyond)) return;
        for (const Ring& ring : area.rings)
            if (ring.contains(cell) && !ring.contains(beyond)) return;
        const double x = cell.x + 0.5 + 0.5 * side.x;
        const double y = cell.y + 0.5 + 0.5 * side.y;
        const double acrossX = 0.5 * side.y;
        const double acrossY = 0.5 * side.x;
        found.push_back({{{x - acrossX, y - acrossY}, {x + acrossX, y + acrossY}}});
    }

    /// The parts of a circle that have the area on one side only. `outward` is 1 where the ring
    /// lies within the circle, -1 where it lies around it.
    void addCircle(const Ring& ring, double radius, int outward) {
        const int steps = std::clamp(static_cast<int>(8 * radius / CHORD), 24, 4096);
        const auto at = [&](double step, double distance) {
            const double angle = 2 * std::acos(-1.0) * step / steps;
            return GridPoint{ring.x + distance * std::cos(angle),
                             ring.y + distance * std::sin(angle)};
        };
        for (int step = 0; step < steps; ++step) {
            const GridPoint from = at(step, radius);
            const GridPoint to = at(step + 1, radius);
            if (!onGrid(from) || !onGrid(to)) continue;
            const GridPoint beyond = at(step + 0.5, radius + outward * HALF_DIAGONAL);
            if (!contains({int(std::floor(beyond.x)), int(std::floor(beyond.y))}))
                found.push_back({from, to});
        }
    }

    bool onGrid(GridPoint p) const { return p.x >= 0 && p.y >= 0 && p.x <= width && p.y <= height; }

    const Area& area;
    int width;
    int height;
    std::vector<std::array<GridPoint, 2>> found;
};

}  // namespace

std::vector<std::array<GridPoint, 2>> outlineOf(const Area& area, int width, int height) {
    return AreaOutline(area, width, height).lines();
}

}  // namespace voxam::inline drawing
