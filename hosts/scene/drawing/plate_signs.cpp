#include "drawing/plate_signs.h"

#include <algorithm>

namespace voxam::inline drawing {

namespace {

constexpr double SUPPORT_SIZE = 11;
constexpr double SUPPORT_SPACING = 18;
constexpr double ROLLER_RADIUS = 0.22 * SUPPORT_SIZE;

constexpr double TICK = 4;
constexpr double WIDEST_NUMBER = 40;
constexpr double TALLEST_NUMBER = 24;

/// Unit vector from the plate to the side on which the sign of a support stands.
Point outward(const Support& support, const Scene& scene) {
    const double x = 0.5 * (support.x.from + support.x.to);
    const double y = 0.5 * (support.y.from + support.y.to);
    const Point sideways = {x <= 0.5 * scene.width ? -1.0 : 1.0, 0};
    const Point upright = {0, y < 0.5 * scene.height ? -1.0 : 1.0};
    if (!support.fixY) return sideways;
    if (!support.fixX) return upright;
    if (support.x.count() != support.y.count())
        return support.x.count() < support.y.count() ? sideways : upright;
    const double toSide = std::min(x, scene.width - x);
    const double toTopOrBottom = std::min(y, scene.height - y);
    return toSide < toTopOrBottom ? sideways : upright;
}

/// Nodes that get a number: round ones that stay `room` pixels apart, and the last.
std::vector<int> rulerNodes(int last, double scale, double room) {
    int step = 1;
    for (int power = 1; step * scale < room; power *= 10)
        for (const int digit : {1, 2, 5})
            if (step * scale < room) step = digit * power;
    std::vector<int> nodes;
    for (int node = 0; node < last && (last - node) * scale >= room; node += step)
        nodes.push_back(node);
    if (nodes.empty() && last * scale >= room / 2) nodes.push_back(0);
    nodes.push_back(last);
    return nodes;
}

}  // namespace

std::vector<Point> arrowShape(const LoadArrow& arrow) {
    const Point along = arrow.direction;
    const Point across = {-along.y, along.x};
    const Point tip = arrow.tip();
    const Point neck = tip + -11 * along;
    return {arrow.tail + 1.5 * across, neck + 1.5 * across,  neck + 5.5 * across,       tip,
            neck + -5.5 * across,      neck + -1.5 * across, arrow.tail + -1.5 * across};
}

SupportSign supportSign(Point node, Point out, bool roller) {
    const Point across = {-out.y, out.x};
    const double size = roller ? 0.75 * SUPPORT_SIZE : SUPPORT_SIZE;
    const Point base = node + size * out;
    const Point ground = node + (1.25 * SUPPORT_SIZE) * out;
    return {{node, base + 0.6 * size * across, base + -0.6 * size * across},
            base + ROLLER_RADIUS * out,
            roller ? ROLLER_RADIUS : 0,
            {ground + 0.8 * SUPPORT_SIZE * across, ground + -0.8 * SUPPORT_SIZE * across}};
}

std::vector<SupportSign> supportSigns(const Support& support, const Scene& scene, Point plate,
                                      double scale) {
    const Point out = outward(support, scene);
    std::vector<SupportSign> signs;
    for (const Point node : spacedPlaces(support.x, support.y, plate, scale, SUPPORT_SPACING))
        signs.push_back(supportSign(node, out, !(support.fixX && support.fixY)));
    return signs;
}

std::array<Ruler, 2> rulers(const Scene& scene, Point plate, double scale, Point corner) {
    const Point far = plate + scale * Point{double(scene.width), double(scene.height)};
    Ruler below;
    below.lines.push_back({{{plate.x, corner.y}, {far.x, corner.y}}});
    for (const int node : rulerNodes(scene.width, scale, WIDEST_NUMBER)) {
        const Point foot = {plate.x + scale * node, corner.y};
        below.lines.push_back({{foot, foot + Point{0, TICK}}});
        below.numbers.push_back({std::to_string(node), foot + Point{0, 15}, 0.5});
    }
    below.axis = {"x", {far.x + 18, corner.y + 4}, 0.5};
    Ruler left;
    left.lines.push_back({{{corner.x, plate.y}, {corner.x, far.y}}});
    for (const int node : rulerNodes(scene.height, scale, TALLEST_NUMBER)) {
        const Point foot = {corner.x, plate.y + scale * node};
        left.lines.push_back({{foot, foot + Point{-TICK, 0}}});
        left.numbers.push_back({std::to_string(node), foot + Point{-7, 4}, 1});
    }
    left.axis = {"y", {corner.x, far.y + 16}, 0.5};
    return {below, left};
}

}  // namespace voxam::inline drawing
