#pragma once

#include <vector>

#include "drawing/colour.h"
#include "format/field.h"

namespace voxam::inline drawing {

/// A logarithmic scale for the energies of elements. Energies spread over decades: a linear scale
/// would show one colour everywhere but next to point loads.
class EnergyScale {
public:
    /// Spans the energies of the solid elements without the extremes at both ends. Both fields have
    /// the same size.
    EnergyScale(const Field& energies, const Field& densities);

    /// Mean energy of all elements, the unit of lower() and upper(); 0 if all energies are 0.
    double average() const { return mean; }
    double lower() const { return from; }
    double upper() const { return to; }

    /// The place of a multiple of the average on the scale: 0 (lower) to 1 (upper), clamped.
    double position(double multiple) const;

    /// The values to label on the scale, as multiples of `unit`, which is itself a multiple of the
    /// average: powers of ten, and also 2 and 5 times these if there are few powers.
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
