#include "DensityPowers.h"

#include <cmath>

#include "ParallelFor.h"

void DensityPowers::compute(const DesignGrids& grids, const kmat::DenseMatrix& rhoPhys,
                            double penalty) {
    const size_t cellsPerColumn = size_t{grids.nely} * grids.subdivision * grids.subdivision;
    parallelFor(grids.nelx, [&](size_t ix) {
        for (size_t e = ix * cellsPerColumn; e < (ix + 1) * cellsPerColumn; ++e) {
            const double density = rhoPhys.begin()[e];
            power[e] = std::pow(density, penalty);
            const bool infinite = density == 0.0 && penalty < 1.0;
            powerLessOne[e] = infinite ? 0.0 : std::pow(density, penalty - 1.0);
        }
    });
}
