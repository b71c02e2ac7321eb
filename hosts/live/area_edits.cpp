#include "area_edits.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <utility>

#include "format/grid.h"

using namespace voxam;

namespace {

Mask maskOf(const Cells& cells, const Scene& scene) {
    Mask mask(scene.width, scene.height);
    mark(mask, cells);
    return mask;
}

/// The parts of a ring inside and outside another one with the same centre.
std::vector<Ring> partsBeside(const Ring& ring, const Ring& other, const Scene& scene) {
    std::vector<Ring> parts = {{ring.x, ring.y, ring.inner, std::min(ring.outer, other.inner)},
                               {ring.x, ring.y, std::max(ring.inner, other.outer), ring.outer}};
    std::erase_if(parts, [&](const Ring& part) {
        return part.inner >= part.outer || cellsOf(part, scene.width, scene.height).empty();
    });
    return parts;
}

/// The rings that remain of a ring without `gone`; empty if the rest has another form.
std::optional<std::vector<Ring>> restOf(const Ring& ring, const Area& gone, const Mask& isGone,
                                        const Scene& scene) {
    std::vector<Ring> rest = {ring};
    for (const Ring& other : gone.rings) {
        if (other.x != ring.x || other.y != ring.y) continue;
        std::vector<Ring> next;
        for (const Ring& part : rest)
            for (const Ring& left : partsBeside(part, other, scene)) next.push_back(left);
        rest = std::move(next);
    }
    const Cells cells = cellsOf(ring, scene.width, scene.height);
    const bool isExact = std::all_of(cells.begin(), cells.end(), [&](const Cell& cell) {
        const bool stays = std::any_of(rest.begin(), rest.end(),
                                       [&](const Ring& part) { return part.contains(cell); });
        return stays == (isGone.at(cell.x, cell.y) == 0);
    });
    return isExact ? std::optional(rest) : std::nullopt;
}

}  // namespace

const Area& areaOf(const PassiveAreas& passive, PassiveKind kind) {
    const std::array<const Area*, 3> areas = {&passive.voids, &passive.solids,
                                              &passive.secondSolids};
    return *areas[static_cast<std::size_t>(kind)];
}

Area& areaOf(PassiveAreas& passive, PassiveKind kind) {
    const std::array<Area*, 3> areas = {&passive.voids, &passive.solids, &passive.secondSolids};
    return *areas[static_cast<std::size_t>(kind)];
}

bool isLoose(const Area& area, const Cell& cell) {
    if (!std::binary_search(area.cells.begin(), area.cells.end(), cell)) return false;
    return std::binary_search(area.covered.begin(), area.covered.end(), cell) ||
           std::none_of(area.rings.begin(), area.rings.end(),
                        [&](const Ring& ring) { return ring.contains(cell); });
}

void addArea(Area& area, const Area& more, const Scene& scene) {
    Mask loose = maskOf(looseCells(area, scene.width, scene.height), scene);
    mark(loose, looseCells(more, scene.width, scene.height));
    std::vector<Ring> rings = area.rings;
    rings.insert(rings.end(), more.rings.begin(), more.rings.end());
    area = joinedArea(cellsWith(loose), std::move(rings), scene.width, scene.height);
}

void takeAway(Area& area, const Area& gone, const Scene& scene) {
    const Mask isGone = maskOf(gone.cells, scene);
    const auto isHit = [&](const Cell& cell) { return isGone.get(cell.x, cell.y) != 0; };
    if (std::none_of(area.cells.begin(), area.cells.end(), isHit)) return;
    Mask loose = maskOf(looseCells(area, scene.width, scene.height), scene);
    std::vector<Ring> rings;
    for (const Ring& ring : area.rings) {
        if (const auto rest = restOf(ring, gone, isGone, scene))
            rings.insert(rings.end(), rest->begin(), rest->end());
        else
            mark(loose, cellsOf(ring, scene.width, scene.height));
    }
    mark(loose, gone.cells, 0);
    area = joinedArea(cellsWith(loose), std::move(rings), scene.width, scene.height);
}

Cells newCells(const Area& area, const Cells& cells) {
    Cells added;
    std::set_difference(cells.begin(), cells.end(), area.cells.begin(), area.cells.end(),
                        std::back_inserter(added));
    return added;
}
