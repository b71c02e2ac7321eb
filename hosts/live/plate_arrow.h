#pragma once

#include <QPointF>
#include <map>
#include <optional>
#include <vector>

#include "drawing/load_arrows.h"
#include "format/scene.h"
#include "plate_transform.h"

using namespace voxam;

inline QPointF toQt(Point place) { return {place.x, place.y}; }
inline Point ofQt(QPointF place) { return {place.x(), place.y()}; }

/// The arrows of all loads, in a widget.
inline std::vector<LoadArrow> arrowsOf(const Scene& scene, const ForceScale& forces,
                                       const PlateTransform& transform,
                                       const std::optional<HeldLoad>& held = std::nullopt) {
    return loadArrows(scene, ofQt(transform.origin), transform.scale, forces, held);
}

/// The arrows of each load. The arrow in the middle is its handle.
using ArrowsByLoad = std::map<std::size_t, std::vector<LoadArrow>>;

/// A load without a force gets a handle, too.
ArrowsByLoad byLoad(const std::vector<LoadArrow>& arrows, const Scene& scene,
                    const PlateTransform& transform);

/// The arrow that a hand can turn.
inline const LoadArrow& handleOf(const std::vector<LoadArrow>& arrowsOfLoad) {
    return arrowsOfLoad[arrowsOfLoad.size() / 2];
}
