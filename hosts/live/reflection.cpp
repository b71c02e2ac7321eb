#include "reflection.h"

#include <algorithm>

#include "format/symmetry.h"

using namespace voxam;

namespace {

/// The node coordinate of the plane, across it.
int planeAt(const Scene& scene) {
    if (scene.symmetry == Symmetry::RIGHT) return scene.width;
    if (scene.symmetry == Symmetry::BOTTOM) return scene.height;
    return 0;
}

template <typename Component>
bool liesOnPlane(const Component& component, const Scene& scene) {
    const Range& across = isUpright(scene.symmetry) ? component.x : component.y;
    return scene.symmetry != Symmetry::NONE && across.count() == 1 && across.from == planeAt(scene);
}

}  // namespace

WholePlate wholePlateOf(const Scene& scene) {
    const QSizeF half(scene.width, scene.height);
    switch (scene.symmetry) {
        case Symmetry::LEFT:
            return {{half.width(), 0}, {2 * half.width(), half.height()}};
        case Symmetry::RIGHT:
            return {{0, 0}, {2 * half.width(), half.height()}};
        case Symmetry::TOP:
            return {{0, half.height()}, {half.width(), 2 * half.height()}};
        case Symmetry::BOTTOM:
            return {{0, 0}, {half.width(), 2 * half.height()}};
        case Symmetry::NONE:
            break;
    }
    return {{0, 0}, half};
}

QRectF wholeRect(const Scene& scene, const PlateTransform& transform) {
    const WholePlate whole = wholePlateOf(scene);
    return {transform.toWidget(-whole.offset), transform.scale * whole.size};
}

QTransform reflection(const Scene& scene, const PlateTransform& transform) {
    const bool upright = isUpright(scene.symmetry);
    const QPointF plane =
        transform.toWidget(upright ? planeAt(scene) : 0, upright ? 0 : planeAt(scene));
    return upright ? QTransform(-1, 0, 0, 1, 2 * plane.x(), 0)
                   : QTransform(1, 0, 0, -1, 0, 2 * plane.y());
}

QPointF reflectedPlace(const Scene& scene, QPointF plate) {
    return reflection(scene, {{0, 0}, 1}).map(plate);
}

QLineF planeOf(const Scene& scene, const PlateTransform& transform) {
    const int at = planeAt(scene);
    if (isUpright(scene.symmetry))
        return {transform.toWidget(at, 0), transform.toWidget(at, scene.height)};
    return {transform.toWidget(0, at), transform.toWidget(scene.width, at)};
}

bool standsForPlane(const Support& support, const Scene& scene) {
    const bool holdsAlong = isUpright(scene.symmetry) ? support.fixY : support.fixX;
    return liesOnPlane(support, scene) && !holdsAlong;
}

std::shared_ptr<const Scene> shownHalf(const std::shared_ptr<const Scene>& scene) {
    if (scene->symmetry == Symmetry::NONE) return scene;
    auto shown = std::make_shared<Scene>(*scene);
    std::erase_if(shown->supports,
                  [&](const Support& support) { return standsForPlane(support, *scene); });
    return shown;
}

std::shared_ptr<const Scene> reflectedHalf(const Scene& scene) {
    if (scene.symmetry == Symmetry::NONE) return nullptr;
    auto other = std::make_shared<Scene>(scene);
    std::erase_if(other->supports, [&](const Support& each) { return liesOnPlane(each, scene); });
    std::erase_if(other->loads, [&](const Load& each) { return liesOnPlane(each, scene); });
    // Numbers would be mirrored, too.
    other->loadCases.resize(1);
    return other;
}
