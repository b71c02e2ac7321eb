#include "plate_arrow.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double SHORTEST = 20;  // pixels, like all below
constexpr double ORDINARY = 46;
constexpr double ORDINARY_OF_ROW = 32;
constexpr double LONGEST = 200;
constexpr double ARROW_SPACING = 20;

double ordinaryLength(bool isSingle) { return isSingle ? ORDINARY : ORDINARY_OF_ROW; }

PlateArrow arrowAt(QPointF place, const Load& load, const Scene& scene, const ForceScale& forces,
                   const PlateTransform& transform) {
    const double force = forceOf(load);
    // Without a force there is no direction; the hand still needs something to hold.
    const QPointF direction = force > 0 ? QPointF(load.fx, load.fy) / force : QPointF(0, 1);
    const double length = forces.length(force, isSingle(load));
    const QPointF node = transform.toWidget(place);
    const QPointF ahead = transform.toPlate(node + direction);
    const bool pointsOff =
        ahead.x() < 0 || ahead.y() < 0 || ahead.x() > scene.width || ahead.y() > scene.height;
    return pointsOff ? PlateArrow{node, node + length * direction, true}
                     : PlateArrow{node - length * direction, node, false};
}

}  // namespace

ForceScale::ForceScale(const Scene& scene) {
    double largest = 0;
    for (const Load& load : scene.loads) largest = std::max(largest, forceOf(load));
    if (largest > 0) ordinaryForce = largest;
}

double ForceScale::length(double force, bool isSingle) const {
    const double room = ordinaryLength(isSingle) - SHORTEST;
    return std::min(SHORTEST + room * force / ordinaryForce, LONGEST);
}

double ForceScale::force(double length, bool isSingle) const {
    const double room = ordinaryLength(isSingle) - SHORTEST;
    return std::max(0.0, length - SHORTEST) / room * ordinaryForce;
}

double PlateArrow::length() const {
    const QPointF along = tip - tail;
    return std::hypot(along.x(), along.y());
}

bool isSingle(const Load& load) { return load.x.count() == 1 && load.y.count() == 1; }

double forceOf(const Load& load) { return std::hypot(load.fx, load.fy); }

std::vector<PlateArrow> arrowsOf(const Load& load, const Scene& scene, const ForceScale& forces,
                                 const PlateTransform& transform) {
    std::vector<PlateArrow> arrows;
    if (forceOf(load) == 0) return arrows;
    for (const QPointF place : signPlaces(load.x, load.y, ARROW_SPACING, transform.scale))
        arrows.push_back(arrowAt(place, load, scene, forces, transform));
    return arrows;
}

PlateArrow handleOf(const Load& load, const Scene& scene, const ForceScale& forces,
                    const PlateTransform& transform) {
    const QPointF middle(0.5 * (load.x.from + load.x.to), 0.5 * (load.y.from + load.y.to));
    return arrowAt(middle, load, scene, forces, transform);
}

std::vector<QPointF> signPlaces(const Range& columns, const Range& rows, double spacing,
                                double scale) {
    const auto intervals = [&](const Range& range) {
        const int all = range.to - range.from;
        return std::min(all, std::max(1, static_cast<int>(all * scale / spacing)));
    };
    const auto place = [](const Range& range, int step, int of) {
        return range.from + static_cast<double>(range.to - range.from) * step / std::max(1, of);
    };
    const int across = intervals(columns);
    const int down = intervals(rows);
    std::vector<QPointF> places;
    for (int i = 0; i <= across; ++i)
        for (int j = 0; j <= down; ++j)
            places.emplace_back(place(columns, i, across), place(rows, j, down));
    return places;
}
