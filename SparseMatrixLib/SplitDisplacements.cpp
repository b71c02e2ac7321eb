#include "SplitDisplacements.h"

#include <algorithm>
#include <cmath>

namespace {

// A nodal force of four elements of modulus 1 is below 2^10 times the largest displacement. With
// coarse parts of up to 42 bits all of its sums are whole numbers of up to 52 bits.
constexpr int COARSE_BITS = 42;

// Adding and subtracting it rounds a double to a multiple of `unit`.
double roundingConstant(double unit) { return 0x1.8p52 * unit; }

}  // namespace

void SplitDisplacements::setZero() {
    std::fill(coarse.begin(), coarse.end(), 0.0);
    std::fill(fine.begin(), fine.end(), 0.0);
}

void SplitDisplacements::add(const double* corrections) {
    double largest = 0.0;
    for (std::size_t i = 0; i < coarse.size(); ++i) {
        fine[i] += corrections[i];
        largest = std::max(largest, std::fabs(coarse[i] + fine[i]));
    }
    if (!(largest > 0.0) || !std::isfinite(largest)) return;
    const double rounding =
        roundingConstant(std::ldexp(1.0, std::ilogb(largest) + 1 - COARSE_BITS));
    for (std::size_t i = 0; i < coarse.size(); ++i) {
        const double rounded = ((coarse[i] + fine[i]) + rounding) - rounding;
        fine[i] += coarse[i] - rounded;
        coarse[i] = rounded;
    }
}

void SplitDisplacements::residual(unsigned nelx, unsigned nely, const std::vector<double>& moduli,
                                  const std::vector<double>& forces, Workspace& workspace,
                                  double* result) const {
    // Summed apart, because the sums of the coarse forces are exact.
    auto& [coarseForces, fineForces] = workspace;
    coarseForces.assign(forces.size(), 0.0);
    fineForces.assign(forces.size(), 0.0);
    const double* modulus = moduli.data();
    for (unsigned x = 0; x < nelx; ++x) {
        for (unsigned y = 0; y < nely; ++y, ++modulus) {
            if (*modulus == 0.0) continue;
            const ElementDofs dofs = elementDofs(x, y, nely + 1);
            const ElementVector c = nodalForces(deformationOf(gathered(coarse, dofs)));
            const ElementVector f = nodalForces(deformationOf(gathered(fine, dofs)));
            for (std::size_t i = 0; i < ELEMENT_DOFS; ++i) {
                coarseForces[dofs[i]] += *modulus * c[i];
                fineForces[dofs[i]] += *modulus * f[i];
            }
        }
    }
    for (std::size_t i = 0; i < forces.size(); ++i) {
        result[i] = (forces[i] - coarseForces[i]) - fineForces[i];
    }
}
