#include "brush.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double STEP = 0.5;  // elements; a longer one would leave gaps between slanting footprints
// From a node to the centre of the element whose index is the node's: nodes are painted as the
// elements of a grid that is shifted by half an element.
constexpr QPointF NODE_SHIFT(0.5, 0.5);

}  // namespace

Cells footprint(const Brush& brush, QPointF plate) {
    // A brush of an even size has a node in its middle, one of an odd size an element.
    const double half = 0.5 * brush.size;
    const auto first = [&](double at) { return static_cast<int>(std::lround(at - half)); };
    const Cell corner = {first(plate.x()), first(plate.y())};
    const double reach = half * half - 0.25;
    Cells cells;
    for (int x = 0; x < brush.size; ++x)
        for (int y = 0; y < brush.size; ++y) {
            const double dx = x + 0.5 - half;
            const double dy = y + 0.5 - half;
            if (brush.size > 2 && brush.isRound && dx * dx + dy * dy >= reach) continue;
            cells.push_back({corner.x + x, corner.y + y});
        }
    return cells;
}

Cells strokeCells(const Brush& brush, QPointF from, QPointF to) {
    const QPointF way = to - from;
    const int steps = std::max(1, static_cast<int>(std::hypot(way.x(), way.y()) / STEP));
    Cells cells;
    for (int i = 0; i <= steps; ++i) {
        const Cells here = footprint(brush, from + way * (static_cast<double>(i) / steps));
        cells.insert(cells.end(), here.begin(), here.end());
    }
    std::sort(cells.begin(), cells.end());
    cells.erase(std::unique(cells.begin(), cells.end()), cells.end());
    return cells;
}

std::vector<Node> strokeNodes(const Brush& brush, QPointF from, QPointF to) {
    std::vector<Node> nodes;
    for (const Cell& cell : strokeCells(brush, from + NODE_SHIFT, to + NODE_SHIFT))
        nodes.push_back({cell.x, cell.y});
    return nodes;
}
