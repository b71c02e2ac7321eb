#include "drawing/load_arrows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace voxam::inline drawing {

namespace {

// Pixels.
constexpr double SHORTEST_ARROW = 20;
constexpr double ORDINARY_ARROW = 44;
constexpr double ORDINARY_ARROW_OF_ROW = 32;
constexpr double LONGEST_ARROW = 200;
constexpr double ARROW_SPACING = 20;
constexpr double ARROW_WIDTH = 13;
constexpr double NEAR = 8;  // nodes so near to one another count as one

// Loads from which on arrows only show where some are: comparing each with each would take hours.
constexpr std::size_t MANY_LOADS = 500;

constexpr double PARALLEL = 0.97;  // cosine of the angle from which arrows stand clear

// Chosen by a search for the largest distance between the nearest two (29 in CIELAB), whether seen
// in full or without one of the three kinds of cones, and from the void at once.
constexpr std::array<Colour, LOAD_CASE_COLOURS> COLOURS = {{{0.05, 0.35, 0.75},
                                                            {1.0, 0.7, 0.0},
                                                            {0.7, 0.0, 0.0},
                                                            {0.0, 0.7, 1.0},
                                                            {0.55, 0.0, 1.0},
                                                            {0.55, 0.7, 0.4},
                                                            {0.4, 0.2, 0.2},
                                                            {0.85, 0.2, 0.55}}};

double dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }

/// At right angles to a direction, pointing right or down.
Point across(Point direction) {
    const Point right = {-direction.y, direction.x};
    const bool back = right.x < -1e-9 || (right.x < 1e-9 && right.y < 0);
    return back ? -1 * right : right;
}

/// What a force of the unit adds to the shortest arrow.
double roomOf(bool single) {
    return (single ? ORDINARY_ARROW : ORDINARY_ARROW_OF_ROW) - SHORTEST_ARROW;
}

bool overlap(const Range& a, const Range& b) { return a.from <= b.to && b.from <= a.to; }

/// How many loads pull at nodes of this one: so many arrows share the room of one.
int crowd(const Load& load, const Scene& scene) {
    return static_cast<int>(std::count_if(
        scene.loads.begin(), scene.loads.end(),
        [&](const Load& other) { return overlap(load.x, other.x) && overlap(load.y, other.y); }));
}

/// Whether arrows of about the same or the opposite direction lie on one another. Those that only
/// meet, such as two that push at one node from both sides, do not.
bool cover(const LoadArrow& a, const LoadArrow& b) {
    if (std::abs(dot(a.direction, b.direction)) < PARALLEL) return false;
    const Point between = b.tail + -1 * a.tail;
    if (std::abs(dot(between, across(a.direction))) >= NEAR) return false;
    const double tail = dot(between, a.direction);
    const double tip = tail + b.length * dot(a.direction, b.direction);
    return std::min(a.length, std::max(tail, tip)) - std::max(0.0, std::min(tail, tip)) > NEAR;
}

/// By ascending load case to the right, or down.
void standSideBySide(std::vector<LoadArrow>& arrows) {
    std::vector<bool> placed(arrows.size());
    for (std::size_t i = 0; i < arrows.size(); ++i) {
        if (placed[i]) continue;
        std::vector<std::size_t> group;
        for (std::size_t j = i; j < arrows.size(); ++j)
            if (!placed[j] && cover(arrows[i], arrows[j])) group.push_back(j);
        const Point aside = ARROW_WIDTH * across(arrows[i].direction);
        for (std::size_t k = 0; k < group.size(); ++k) {
            LoadArrow& arrow = arrows[group[k]];
            const double middle = 0.5 * static_cast<double>(group.size() - 1);
            arrow.tail = arrow.tail + (static_cast<double>(k) - middle) * aside;
            placed[group[k]] = true;
        }
    }
}

/// Squares of the picture that have room for one arrow of each load case and direction.
class ArrowRoom {
public:
    /// Whether there was room.
    bool take(const LoadArrow& arrow) {
        const auto rounded = [](double value) { return static_cast<int>(std::lround(value)); };
        return taken
            .insert({rounded(arrow.tail.x / ARROW_SPACING), rounded(arrow.tail.y / ARROW_SPACING),
                     rounded(4 * arrow.direction.x), rounded(4 * arrow.direction.y),
                     arrow.loadCase})
            .second;
    }

private:
    std::set<std::array<int, 5>> taken;
};

/// The arrow of a load at one of its places, as if it were the only one.
LoadArrow arrowAt(Point node, const Load& load, double length, bool tailAtNode) {
    const Point direction = (1 / forceOf(load)) * Point{load.fx, load.fy};
    LoadArrow arrow;
    arrow.tail = tailAtNode ? node : node + -length * direction;
    arrow.direction = direction;
    arrow.length = length;
    arrow.loadCase = load.loadCase;
    arrow.tailAtNode = tailAtNode;
    return arrow;
}

}  // namespace

ForceScale::ForceScale(const Scene& scene) {
    double largest = 0;
    for (const Load& load : scene.loads) largest = std::max(largest, forceOf(load));
    if (largest > 0) ordinaryForce = largest;
}

double ForceScale::length(double force, bool single) const {
    return std::min(SHORTEST_ARROW + roomOf(single) * force / ordinaryForce, LONGEST_ARROW);
}

bool isSingle(const Load& load) { return load.x.count() == 1 && load.y.count() == 1; }

double forceOf(const Load& load) { return std::hypot(load.fx, load.fy); }

Colour loadCaseColour(int loadCase) {
    return COLOURS[static_cast<std::size_t>(loadCase % LOAD_CASE_COLOURS)];
}

std::vector<Point> spacedPlaces(const Range& columns, const Range& rows, Point plate, double scale,
                                double spacing) {
    const auto intervals = [&](const Range& range) {
        const int all = range.to - range.from;
        return std::min(all, std::max(1, int(all * scale / spacing)));
    };
    const auto place = [](const Range& range, int step, int of) {
        return range.from + double(range.to - range.from) * step / std::max(1, of);
    };
    std::vector<Point> places;
    const int across = intervals(columns);
    const int down = intervals(rows);
    for (int i = 0; i <= across; ++i)
        for (int j = 0; j <= down; ++j)
            places.push_back(plate +
                             scale * Point{place(columns, i, across), place(rows, j, down)});
    return places;
}

std::vector<LoadArrow> loadArrows(const Scene& scene, Point plate, double scale,
                                  const ForceScale& forces, const std::optional<HeldLoad>& held) {
    const Point far = plate + scale * Point{double(scene.width), double(scene.height)};
    const auto onPlate = [&](Point p) {
        return p.x >= plate.x && p.x <= far.x && p.y >= plate.y && p.y <= far.y;
    };
    const bool many = scene.loads.size() > MANY_LOADS;
    ArrowRoom room;
    std::vector<LoadArrow> arrows;
    std::vector<LoadArrow> heldArrows;
    for (std::size_t i = 0; i < scene.loads.size(); ++i) {
        const Load& load = scene.loads[i];
        const double force = forceOf(load);
        if (force == 0) continue;
        const double length = forces.length(force, isSingle(load));
        const int neighbours = many ? 1 : crowd(load, scene);
        const double spacing = std::max(ARROW_SPACING, ARROW_WIDTH * (neighbours + 0.5));
        const bool isHeld = held && held->load == i;
        for (const Point node : spacedPlaces(load.x, load.y, plate, scale, spacing)) {
            const Point ahead = node + (1 / force) * Point{load.fx, load.fy};
            LoadArrow arrow =
                isHeld ? arrowAt(node, load, held->length.value_or(length), held->tailAtNode)
                       : arrowAt(node, load, length, !onPlate(ahead));
            arrow.load = i;
            if (isHeld)
                heldArrows.push_back(arrow);
            else if (!many || room.take(arrow))
                arrows.push_back(arrow);
        }
    }
    std::stable_sort(arrows.begin(), arrows.end(), [](const LoadArrow& a, const LoadArrow& b) {
        return a.loadCase < b.loadCase;
    });
    if (!many) standSideBySide(arrows);
    arrows.insert(arrows.end(), heldArrows.begin(), heldArrows.end());
    return arrows;
}

}  // namespace voxam::inline drawing
