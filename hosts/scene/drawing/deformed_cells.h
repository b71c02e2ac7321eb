#pragma once

#include <array>
#include <map>
#include <optional>
#include <vector>

#include "drawing/point.h"
#include "run/views.h"

namespace voxam::inline drawing {

using Quad = std::array<Point, 4>;

/// The cells of a design on a deformed plate, as quadrangles by density in steps of 1/16. Void
/// cells are left out. Where a cell is smaller than a pixel, a quadrangle is a block of cells.
/// `plate` is the top left corner of the plate at rest, `scale` the pixels per element of the
/// scene. `share` of the deformation is drawn.
std::map<double, std::vector<Quad>> deformedCells(const Field& material,
                                                  const Deformation& deformation,
                                                  const Scene& scene, Point plate, double scale,
                                                  double share = 1);

/// The place on the plate at rest of what deformedCells() draws at `drawn`, both in elements of the
/// scene. Empty if no material is drawn there.
std::optional<Point> placeAtRest(const Field& material, const Deformation& deformation,
                                 const Scene& scene, Point drawn, double share = 1);

}  // namespace voxam::inline drawing
