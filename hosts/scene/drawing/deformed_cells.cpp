#include "drawing/deformed_cells.h"

#include <algorithm>
#include <cmath>

namespace voxam::inline drawing {

namespace {

/// Corners of the cells of a design on its deformed plate, in cells.
class Corners {
public:
    Corners(const Field& design, const Deformation& deformed, const Scene& scene, double share)
        : material(design),
          deformation(deformed),
          factor(share * deformed.magnification * design.width / scene.width) {}

    Point at(int x, int y) const {
        x = std::min(x, material.width);
        y = std::min(y, material.height);
        return {x + factor * deformation.right.at(x, y), y + factor * deformation.down.at(x, y)};
    }

    /// The corners of a block of cells, clockwise.
    Quad around(int x, int y, int block) const {
        return {at(x, y), at(x + block, y), at(x + block, y + block), at(x, y + block)};
    }

private:
    const Field& material;
    const Deformation& deformation;
    double factor;
};

/// By the even-odd rule, which also holds for a cell that is bent until it is no longer convex.
bool contains(const Quad& quad, Point place) {
    bool isInside = false;
    for (std::size_t i = 0, j = quad.size() - 1; i < quad.size(); j = i++) {
        const Point& one = quad[i];
        const Point& other = quad[j];
        if ((one.y > place.y) != (other.y > place.y) &&
            place.x < one.x + (other.x - one.x) * (place.y - one.y) / (other.y - one.y))
            isInside = !isInside;
    }
    return isInside;
}

/// Where a place lies between the corners, from 0 to 1 in both directions, as in a parallelogram.
Point shareOf(const Quad& quad, Point place) {
    const Point right = quad[1] - quad[0];
    const Point down = quad[3] - quad[0];
    const Point to = place - quad[0];
    const double area = right.x * down.y - right.y * down.x;
    if (area == 0) return {0.5, 0.5};
    return {std::clamp((to.x * down.y - to.y * down.x) / area, 0.0, 1.0),
            std::clamp((right.x * to.y - right.y * to.x) / area, 0.0, 1.0)};
}

}  // namespace

std::map<double, std::vector<Quad>> deformedCells(const Field& material,
                                                  const Deformation& deformation,
                                                  const Scene& scene, Point plate, double scale,
                                                  double share) {
    const double cell = scale * scene.width / material.width;
    const int block = std::max(1, int(1 / cell));
    const Corners corners(material, deformation, scene, share);
    constexpr double shades = 16;
    std::map<double, std::vector<Quad>> byDensity;
    for (int x = 0; x < material.width; x += block)
        for (int y = 0; y < material.height; y += block) {
            const double density = std::round(shades * material.at(x, y)) / shades;
            if (density <= 0) continue;
            Quad quad = corners.around(x, y, block);
            for (Point& corner : quad) corner = plate + cell * corner;
            byDensity[density].push_back(quad);
        }
    return byDensity;
}

std::optional<Point> placeAtRest(const Field& material, const Deformation& deformation,
                                 const Scene& scene, Point drawn, double share) {
    const double cells = double(material.width) / scene.width;
    const Corners corners(material, deformation, scene, share);
    const Point place = cells * drawn;
    for (int x = 0; x < material.width; ++x)
        for (int y = 0; y < material.height; ++y) {
            if (material.at(x, y) <= 0) continue;
            const Quad quad = corners.around(x, y, 1);
            if (contains(quad, place))
                return (1 / cells) * (Point{double(x), double(y)} + shareOf(quad, place));
        }
    return std::nullopt;
}

}  // namespace voxam::inline drawing
