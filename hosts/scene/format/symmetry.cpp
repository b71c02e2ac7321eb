#include "format/symmetry.h"

#include <algorithm>

namespace voxam::inline format {

namespace {

/// Where the half lies in the whole, and where the mirrored half does.
struct Placement {
    bool upright;
    bool isSecond;  // the half of the scene is the right or the lower one
    int size;       // of the half, across the plane

    int own(int at) const { return isSecond ? at + size : at; }
    /// Of nodes.
    int mirrored(int at) const { return isSecond ? size - at : 2 * size - at; }
    /// Of elements.
    int mirroredElement(int at) const { return mirrored(at) - 1; }
    int plane() const { return isSecond ? 0 : size; }
};

Placement placementOf(Symmetry symmetry, int width, int height) {
    return {isUpright(symmetry), symmetry == Symmetry::LEFT || symmetry == Symmetry::TOP,
            isUpright(symmetry) ? width : height};
}

Area wholeOf(const Area& half, const Placement& placed) {
    Area whole;
    for (Cell cell : half.cells) {
        Cell other = cell;
        int& across = placed.upright ? cell.x : cell.y;
        (placed.upright ? other.x : other.y) = placed.mirroredElement(across);
        across = placed.own(across);
        whole.cells.insert(whole.cells.end(), {cell, other});
    }
    std::sort(whole.cells.begin(), whole.cells.end());
    return whole;
}

Range moved(const Range& range, const Placement& placed) {
    return {placed.own(range.from), placed.own(range.to)};
}

Range mirrored(const Range& range, const Placement& placed) {
    return {placed.mirrored(range.to), placed.mirrored(range.from)};
}

void addLoad(const Load& load, const Placement& placed, std::vector<Load>& loads) {
    const auto across = placed.upright ? &Load::x : &Load::y;
    const auto acrossForce = placed.upright ? &Load::fx : &Load::fy;
    const auto alongForce = placed.upright ? &Load::fy : &Load::fx;
    Load own = load;
    own.*across = moved(load.*across, placed);
    if (load.*across == Range{placed.plane(), placed.plane()}) {
        own.*acrossForce = 0;
        own.*alongForce = 2 * load.*alongForce;
        loads.push_back(own);
        return;
    }
    Load other = load;
    other.*across = mirrored(load.*across, placed);
    other.*acrossForce = -(load.*acrossForce);
    loads.insert(loads.end(), {own, other});
}

void addSupport(const Support& support, const Placement& placed, std::vector<Support>& supports) {
    const auto across = placed.upright ? &Support::x : &Support::y;
    const auto holdsAcross = placed.upright ? &Support::fixX : &Support::fixY;
    Support own = support;
    own.*across = moved(support.*across, placed);
    if (support.*across == Range{placed.plane(), placed.plane()}) {
        own.*holdsAcross = false;
        if (own.fixX || own.fixY) supports.push_back(own);
        return;
    }
    Support other = own;
    other.*across = mirrored(support.*across, placed);
    supports.insert(supports.end(), {own, other});
}

/// Values along one direction that the halves have both, or `shared` ones on the plane.
Field joined(const Field& half, Symmetry symmetry, float sign, int shared) {
    if (symmetry == Symmetry::NONE) return half;
    const bool upright = isUpright(symmetry);
    const Placement placed = placementOf(symmetry, half.width - shared, half.height - shared);
    Field whole(upright ? 2 * half.width - shared : half.width,
                upright ? half.height : 2 * half.height - shared);
    for (int y = 0; y < half.height; ++y)
        for (int x = 0; x < half.width; ++x) {
            const int at = upright ? x : y;
            const int own = placed.own(at);
            const int other = placed.mirrored(at) - (1 - shared);
            const float value = half.at(x, y);
            (upright ? whole.at(other, y) : whole.at(x, other)) = sign * value;
            (upright ? whole.at(own, y) : whole.at(x, own)) = value;
        }
    return whole;
}

}  // namespace

Scene wholeOf(const Scene& scene) {
    if (scene.symmetry == Symmetry::NONE) return scene;
    const Placement placed = placementOf(scene.symmetry, scene.width, scene.height);
    Scene whole = scene;
    whole.symmetry = Symmetry::NONE;
    (placed.upright ? whole.width : whole.height) = 2 * placed.size;
    whole.loads.clear();
    for (const Load& load : scene.loads) addLoad(load, placed, whole.loads);
    whole.supports.clear();
    for (const Support& support : scene.supports) addSupport(support, placed, whole.supports);
    whole.passive = {wholeOf(scene.passive.voids, placed), wholeOf(scene.passive.solids, placed),
                     wholeOf(scene.passive.secondSolids, placed)};
    whole.blob = wholeOf(scene.blob, placed);
    return whole;
}

Field wholeOf(const Field& half, Symmetry symmetry) { return joined(half, symmetry, 1, 0); }

Field wholeOfNodes(const Field& half, Symmetry symmetry, float sign) {
    return joined(half, symmetry, sign, 1);
}

Field halfOf(const Field& whole, Symmetry symmetry) {
    if (symmetry == Symmetry::NONE) return whole;
    const bool upright = isUpright(symmetry);
    Field half(upright ? whole.width / 2 : whole.width, upright ? whole.height : whole.height / 2);
    const Placement placed = placementOf(symmetry, half.width, half.height);
    for (int y = 0; y < half.height; ++y)
        for (int x = 0; x < half.width; ++x)
            half.at(x, y) = upright ? whole.at(placed.own(x), y) : whole.at(x, placed.own(y));
    return half;
}

}  // namespace voxam::inline format
