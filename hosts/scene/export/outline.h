#pragma once

#include <vector>

#include "format/field.h"

namespace voxam::inline files {

/// A place in units of the plate, x to the right and y down.
struct OutlinePoint {
    double x = 0;
    double y = 0;
};

/// A closed line, its last corner joined to its first. It runs counterclockwise, as seen, around
/// material and clockwise around a hole, so that material is always on its left. No three corners
/// in a row lie on one straight line.
struct Contour {
    std::vector<OutlinePoint> corners;
    bool hole = false;
};

/// The border of the material of a plate. Contours neither cross nor touch themselves or one
/// another.
struct Outline {
    double width = 0;  ///< of the plate
    double height = 0;
    std::vector<Contour> contours;
};

/// The line on which the density of the material is `level`, interpolated between the centres of
/// the cells and closed along the border of the plate. Two solid cells that share only a corner
/// stay separate there. `refinement` is the number of cells per edge of an element, `elementSize`
/// the length of that edge in units of the plate. Throws std::bad_alloc.
Outline traceOutline(const Field& material, int refinement, double elementSize = 1,
                     double level = 0.5);

/// The enclosed area without holes.
double area(const Outline& outline);

}  // namespace voxam::inline files
