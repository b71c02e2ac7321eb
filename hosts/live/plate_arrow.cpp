#include "plate_arrow.h"

namespace {

LoadArrow idleArrow(const Load& load, std::size_t index, const PlateTransform& transform) {
    const QPointF node =
        transform.toWidget(0.5 * (load.x.from + load.x.to), 0.5 * (load.y.from + load.y.to));
    LoadArrow arrow;
    arrow.direction = {0, 1};
    arrow.length = ForceScale().length(0, true);
    arrow.tail = ofQt(node) + -arrow.length * arrow.direction;
    arrow.load = index;
    arrow.loadCase = load.loadCase;
    return arrow;
}

}  // namespace

ArrowsByLoad byLoad(const std::vector<LoadArrow>& arrows, const Scene& scene,
                    const PlateTransform& transform) {
    ArrowsByLoad result;
    for (const LoadArrow& arrow : arrows) result[arrow.load].push_back(arrow);
    for (std::size_t i = 0; i < scene.loads.size(); ++i)
        if (forceOf(scene.loads[i]) == 0) result[i] = {idleArrow(scene.loads[i], i, transform)};
    return result;
}
