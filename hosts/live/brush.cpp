#include "brush.h"

#include <QRectF>
#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace {

constexpr double STEP = 0.5;  // elements; a longer one would leave gaps between slanting footprints
// From a node to the centre of the element whose index is the node's: nodes are painted as the
// elements of a grid that is shifted by half an element.
constexpr QPointF NODE_SHIFT(0.5, 0.5);

/// The part of a way that lies within a rectangle, as shares of it; none if it misses it.
std::optional<std::pair<double, double>> partWithin(const QRectF& rect, QPointF from, QPointF way) {
    double begin = 0;
    double end = 1;
    const auto clip = [&](double at, double step, double least, double most) {
        if (step == 0) return at >= least && at <= most;
        const auto [enter, leave] = std::minmax({(least - at) / step, (most - at) / step});
        begin = std::max(begin, enter);
        end = std::min(end, leave);
        return begin <= end;
    };
    if (!clip(from.x(), way.x(), rect.left(), rect.right()) ||
        !clip(from.y(), way.y(), rect.top(), rect.bottom()))
        return std::nullopt;
    return std::pair(begin, end);
}

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

Cells mirrored(const Cells& cells, const Mirror& mirror, int width, int height) {
    Cells all = cells;
    const auto add = [&all](auto&& image) {
        for (std::size_t i = 0, count = all.size(); i < count; ++i) all.push_back(image(all[i]));
    };
    if (mirror.isLeftRight) add([=](const Cell& cell) { return Cell{width - 1 - cell.x, cell.y}; });
    if (mirror.isTopBottom)
        add([=](const Cell& cell) { return Cell{cell.x, height - 1 - cell.y}; });
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

Cells strokeCells(const Brush& brush, QPointF from, QPointF to, int width, int height) {
    const QPointF way = to - from;
    const QRectF reach =
        QRectF(0, 0, width, height).adjusted(-brush.size, -brush.size, brush.size, brush.size);
    const auto part = partWithin(reach, from, way);
    if (!part) return {};
    const auto [begin, end] = *part;
    const int steps =
        std::max(1, static_cast<int>((end - begin) * std::hypot(way.x(), way.y()) / STEP));
    std::vector<bool> touched(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const auto index = [=](int x, int y) {
        return static_cast<std::size_t>(x) * static_cast<std::size_t>(height) +
               static_cast<std::size_t>(y);
    };
    for (int i = 0; i <= steps; ++i) {
        const double along = begin + (end - begin) * i / steps;
        for (const Cell& cell : footprint(brush, from + along * way))
            if (cell.x >= 0 && cell.y >= 0 && cell.x < width && cell.y < height)
                touched[index(cell.x, cell.y)] = true;
    }
    Cells cells;
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y)
            if (touched[index(x, y)]) cells.push_back({x, y});
    return cells;
}

std::vector<Node> strokeNodes(const Brush& brush, QPointF from, QPointF to, int width, int height) {
    std::vector<Node> nodes;
    for (const Cell& cell :
         strokeCells(brush, from + NODE_SHIFT, to + NODE_SHIFT, width + 1, height + 1))
        nodes.push_back({cell.x, cell.y});
    return nodes;
}
