#include "drawing/deformed_cells.h"

#include <algorithm>
#include <cmath>

namespace voxam::inline drawing {

std::map<double, std::vector<Quad>> deformedCells(const Field& material,
                                                  const Deformation& deformation,
                                                  const Scene& scene, Point plate, double scale,
                                                  double share) {
    const double cell = scale * scene.width / material.width;
    const int block = std::max(1, int(1 / cell));
    const double factor = share * deformation.magnification * material.width / scene.width;
    const auto corner = [&](int x, int y) {
        x = std::min(x, material.width);
        y = std::min(y, material.height);
        return plate + cell * Point{x + factor * deformation.right.at(x, y),
                                    y + factor * deformation.down.at(x, y)};
    };
    constexpr double shades = 16;
    std::map<double, std::vector<Quad>> byDensity;
    for (int x = 0; x < material.width; x += block)
        for (int y = 0; y < material.height; y += block) {
            const double density = std::round(shades * material.at(x, y)) / shades;
            if (density > 0)
                byDensity[density].push_back({corner(x, y), corner(x + block, y),
                                              corner(x + block, y + block), corner(x, y + block)});
        }
    return byDensity;
}

}  // namespace voxam::inline drawing
