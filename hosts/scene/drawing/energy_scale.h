#pragma once

#include <vector>

#include "drawing/colour.h"
#include "format/field.h"

namespace voxam::inline drawing {

/// How hard the elements work, on a logarithmic scale: energies spread over decades, and a few
/// elements next to a point load would leave a linear scale one colour elsewhere.
class EnergyScale {
public:
    /// Spans the energies of the solid elements but for the extremes at both ends. Both fields are
    /// of the same size.
    EnergyScale(const Field& energies, const Field& densities);

    /// Mean energy of all elements, the unit of lower() and upper(); 0 when nothing works.
    double average() const { return mean; }
    double lower() const { return from; }
    double upper() const { return to; }

    /// Where a multiple of the average lies on the scale: 0 (lower) to 1 (upper), clamped.
    double position(double multiple) const;

    /// What to label on the scale, as multiples of `unit`, which is itself a multiple of the
    /// average: powers of ten, and 2 and 5 times these where there is room.
    std::vector<double> ticks(double unit = 1) const;

    /// Colour of solid material at a position: light grey through orange and red to dark red, its
    /// lightness falling evenly so that it reads in grey print as well.
    static Colour colour(double position);

private:
    double mean = 0;
    double from = 0.1;
    double to = 10;
};

}  // namespace voxam::inline drawing
