// State, construction and filters of the optimiser.

#include "SolverApp.h"

#include <cmath>
#include <numeric>
#include <stdexcept>

using kmat::undefinedVector;

namespace {

double requireFinite(float volumeFraction) {
    if (!std::isfinite(volumeFraction)) throw std::invalid_argument("volume fraction not finite");
    return volumeFraction;
}

std::vector<double> upperTriangles(const double* matrices, unsigned count) {
    std::vector<double> upper;
    upper.reserve(count * ELEMENT_UPPER_PAIRS.size());
    for (unsigned m = 0; m < count; ++m, matrices += ELEMENT_MATRIX_SIZE) {
        for (const auto& [k, l] : ELEMENT_UPPER_PAIRS) {
            upper.push_back(matrices[ELEMENT_DOFS * k + l]);
        }
    }
    return upper;
}

}  // namespace

SolverApp::SolverApp(unsigned nelx, unsigned nely, unsigned subdivision, unsigned meshFactor,
                     float volumeFraction, int numLoadCases)
    : grids(nelx, nely, subdivision, meshFactor),
      equilibrium(nelx, nely, subdivision, numLoadCases),
      volumeFraction(requireFinite(volumeFraction)),
      targetVolumeFraction(volumeFraction),
      rhoPhys(undefinedVector(grids.numberOfElements)),
      rho(undefinedVector(grids.numberOfElements)),
      rhoOld(undefinedVector(grids.numberOfElements)),
      rhoNew(undefinedVector(grids.numberOfElements)),
      dc(undefinedVector(grids.numberOfElements)),
      dv(undefinedVector(grids.numberOfElements)),
      dcFiltered(undefinedVector(grids.numberOfElements)),
      dvFiltered(undefinedVector(grids.numberOfElements)),
      // Without fine cells there is nothing to filter: radius 0 pairs no cells.
      blob(nelx, nely, subdivision > 0 ? rmin / subdivision : 0.0),
      picture(grids),
      passiveBlock(nelx, nely, subdivision * meshFactor, subdivision),
      powers(grids.numberOfElements),
      strainEnergies(nely, subdivision * subdivision),
      KEUpper(upperTriangles(equilibrium.KE.get(), subdivision * subdivision)),
      compliances(grids.numberOfElements) {
    setFilterMat();
    reset();
}

void SolverApp::setFilterMat() {
    H = ConeFilter(grids.nelx * grids.subdivision, grids.nely * grids.subdivision, rmin);
    H.applyMaximumRule(grids.numberOfCoarseElements);
}

void SolverApp::reset() {
    rho.fill(volumeFraction);
    rhoPhys.fill(volumeFraction);
}

void SolverApp::restartIteration() {
    iteration = 0;
    loop = 0;
}

// A lower bound above the upper one wins, other than with std::clamp.
double SolverApp::clamp(double x, double lo, double hi) {
    if (lo > x) return lo;
    return hi < x ? hi : x;
}

double SolverApp::clamp(double x, double lo1, double lo2, double hi1, double hi2) {
    return clamp(clamp(x, lo1, hi1), lo2, hi2);
}

double SolverApp::sum(const kmat::DenseMatrix& v) {
    return std::accumulate(v.begin(), v.end(), 0.0);
}
