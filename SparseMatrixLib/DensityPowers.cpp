#include "DensityPowers.h"

#include <cmath>

void DensityPowers::computeColumn(const DesignGrids& grids, std::size_t ix,
                                  const kmat::DenseMatrix& rhoPhys, double penalty) {
    const std::size_t cells = std::size_t{grids.nely} * grids.subdivision * grids.subdivision;
    // Solid and void regions are long runs of one value, whose powers are worth taking only once.
    double density = std::nan("");
    for (std::size_t e = ix * cells; e < (ix + 1) * cells; ++e) {
        if (rhoPhys.begin()[e] == density) {
            power[e] = power[e - 1];
            powerLessOne[e] = powerLessOne[e - 1];
            continue;
        }
        density = rhoPhys.begin()[e];
        power[e] = std::pow(density, penalty);
        const bool infinite = density == 0.0 && penalty < 1.0;
        powerLessOne[e] = infinite ? 0.0 : std::pow(density, penalty - 1.0);
    }
}
