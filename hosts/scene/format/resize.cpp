#include "format/resize.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "format/area_reader.h"
#include "format/grid.h"
#include "format/input_error.h"
#include "format/limits.h"

namespace voxam::inline format {

namespace {

Range resized(const Range& range, int before, int after) {
    const auto place = [&](int at) {
        return static_cast<int>(std::lround(static_cast<double>(at) * after / before));
    };
    return {place(range.from), place(range.to)};
}

bool hasSameShape(int width, int height, int newWidth, int newHeight) {
    return 1LL * newWidth * height == 1LL * newHeight * width;
}

/// A point of the plate, in elements.
struct Place {
    double x = 0;
    double y = 0;
};

/// Elements at the edge of a ring lie only partly within it. A point within such an element, but
/// outside the ring, takes the area of an element beside the ring.
Place besideRing(const Place& point, const Ring& ring) {
    const double distance = std::hypot(point.x - ring.x, point.y - ring.y);
    if (distance >= ring.inner && distance < ring.outer) return point;
    // The rounding to elements is wrong by at most half a diagonal, which is less than 1.
    const double step = distance < ring.inner ? -std::min(1.0, distance) : 1.0;
    const double share = distance > 0 ? step / distance : 0;
    return {point.x + share * (point.x - ring.x), point.y + share * (point.y - ring.y)};
}

/// Where a point within rings leaves them, away from their centres. `rings` are those of each
/// element, or null.
Place outsideRings(Place point, const Grid<const Ring*>& rings) {
    constexpr int most = 8;  // touching rings may send a point back and forth
    for (int i = 0; i < most; ++i) {
        const Ring* ring =
            rings.get(static_cast<int>(std::floor(point.x)), static_cast<int>(std::floor(point.y)));
        if (ring == nullptr) break;
        const double distance = std::hypot(point.x - ring->x, point.y - ring->y);
        const double share = distance > 0 ? (ring->outer + 1) / distance : 0;
        point = {ring->x + share * (point.x - ring->x), ring->y + share * (point.y - ring->y)};
        if (distance == 0) point.x += ring->outer + 1;
    }
    return point;
}

/// Changes what a scene and a change of its timeline have in common.
class Resizing {
public:
    Resizing(const Scene& scene, int newWidth, int newHeight)
        : oldWidth(scene.width),
          oldHeight(scene.height),
          width(newWidth),
          height(newHeight),
          keepsShape(hasSameShape(oldWidth, oldHeight, width, height)) {}

    template <typename Component>
    void operator()(std::vector<Component>& components) const {
        for (Component& component : components) {
            component.x = resized(component.x, oldWidth, width);
            component.y = resized(component.y, oldHeight, height);
        }
    }

    void operator()(PassiveAreas& passive) const {
        resize({&passive.voids, &passive.solids, &passive.secondSolids});
    }

    void operator()(Area& area) const { resize({&area}); }

    void operator()(Settings& settings) const {
        (*this)(settings.loads);
        (*this)(settings.supports);
        (*this)(settings.passive);
        (*this)(settings.blob);
    }

    /// Each new cell takes what lies at its centre.
    void operator()(Field& field) const {
        const int refinement = field.width / oldWidth;
        Field result(width * refinement, height * refinement);
        for (int y = 0; y < result.height; ++y)
            for (int x = 0; x < result.width; ++x)
                result.at(x, y) = field.at((2 * x + 1) * field.width / (2 * result.width),
                                           (2 * y + 1) * field.height / (2 * result.height));
        field = std::move(result);
    }

private:
    /// In the new elements. An ellipse is no ring: on a plate of another shape, rings keep their
    /// radii.
    Ring placed(const Ring& ring) const {
        const auto radius = [this](double before) {
            return keepsShape ? before * width / oldWidth : before;
        };
        return {ring.x * width / oldWidth, ring.y * height / oldHeight, radius(ring.inner),
                radius(ring.outer)};
    }

    /// Resizes areas that do not overlap, and keeps them from overlapping.
    void resize(const std::vector<Area*>& areas) const {
        Mask result = sampled(areas);
        Mask taken(width, height);  // by rings
        for (std::size_t i = 0; i < areas.size(); ++i) {
            const auto kind = static_cast<std::uint8_t>(i + 1);
            std::vector<Ring> rings;
            rings.swap(areas[i]->rings);
            for (const Ring& ring : rings) {
                const Ring scaled = placed(ring);
                const Cells cells = cellsOf(scaled, width, height);
                const auto isFree = [&](const Cell& cell) {
                    const int owner = taken.at(cell.x, cell.y);
                    return owner == 0 || owner == kind;
                };
                // On the new grid, rings may share elements that they did not share before.
                if (!cells.empty() && scaled.outer <= MAX_RADIUS &&
                    std::all_of(cells.begin(), cells.end(), isFree))
                    areas[i]->rings.push_back(scaled);
                for (const Cell& cell : cells)
                    if (isFree(cell)) taken.at(cell.x, cell.y) = result.at(cell.x, cell.y) = kind;
            }
        }
        for (std::size_t i = 0; i < areas.size(); ++i) {
            areas[i]->cells = cellsWith(result, static_cast<std::uint8_t>(i + 1));
            areas[i]->covered = coveredCells(*areas[i]);
        }
    }

    /// The elements of the new rings that lie in an old covered element.
    Cells coveredCells(const Area& area) const {
        if (area.covered.empty() || area.rings.empty()) return {};
        Mask before(oldWidth, oldHeight);
        mark(before, area.covered);
        Mask isCovered(width, height);
        for (const Ring& ring : area.rings)
            for (const Cell& cell : cellsOf(ring, width, height))
                isCovered.at(cell.x, cell.y) =
                    before.at((2 * cell.x + 1) * oldWidth / (2 * width),
                              (2 * cell.y + 1) * oldHeight / (2 * height));
        return cellsWith(isCovered);
    }

    /// Each new element with the number of the area at its centre, or 0.
    Mask sampled(const std::vector<Area*>& areas) const {
        Mask kinds(oldWidth, oldHeight);
        Grid<const Ring*> rings(oldWidth, oldHeight);
        for (std::size_t i = 0; i < areas.size(); ++i) {
            mark(kinds, areas[i]->cells, static_cast<std::uint8_t>(i + 1));
            for (const Ring& ring : areas[i]->rings)
                for (const Cell& cell : cellsOf(ring, oldWidth, oldHeight))
                    rings.at(cell.x, cell.y) = &ring;
            for (const Cell& cell : areas[i]->covered) rings.at(cell.x, cell.y) = nullptr;
        }
        Mask result(width, height);
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                Place centre = {(x + 0.5) * oldWidth / width, (y + 0.5) * oldHeight / height};
                if (const Ring* ring =
                        rings.at(static_cast<int>(centre.x), static_cast<int>(centre.y)))
                    centre = keepsShape ? besideRing(centre, *ring) : outsideRings(centre, rings);
                result.at(x, y) = kinds.get(static_cast<int>(std::floor(centre.x)),
                                            static_cast<int>(std::floor(centre.y)));
            }
        }
        return result;
    }

    int oldWidth;
    int oldHeight;
    int width;
    int height;
    bool keepsShape;  // of the plate, and so of rings
};

}  // namespace

double resizedElementSize(const Scene& scene, int width, int height) {
    return hasSameShape(scene.width, scene.height, width, height)
               ? scene.elementSize * scene.width / width
               : scene.elementSize;
}

void resizeGrid(Scene& scene, int width, int height) {
    const Resizing resize(scene, width, height);
    Scene result = scene;
    resize(static_cast<Settings&>(result));
    if (result.densities) resize(*result.densities);
    for (Change& change : result.timeline) resize(change.settings);
    result.elementSize = resizedElementSize(scene, width, height);
    if (result.elementSize < Scene::MIN_ELEMENT_SIZE ||
        result.elementSize > Scene::MAX_ELEMENT_SIZE)
        throw InputError("The elements would be too small or too large, see elementSize");
    result.width = width;
    result.height = height;
    checkLimits(result);
    scene = std::move(result);
}

}  // namespace voxam::inline format
