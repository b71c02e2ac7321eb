// Optimality criteria with a move limit, the physical densities of the new design, and the
// continuation of the stiffness floor.

#include <algorithm>
#include <cmath>

#include "Multiplier.h"
#include "SolverApp.h"
#include "assertion.h"

using kmat::DenseMatrix;

namespace {

constexpr double MOVE_LIMIT = 0.2F;

// Passive cells leave fewer free ones to take up an error of the volume.
constexpr double TOLERANCE_WITH_PASSIVE_CELLS = 1e-9;
constexpr double TOLERANCE = 0.001F;

// Iterations from one lowering of the stiffness floor to the next.
constexpr int EMIN_PERIOD = 7;

}  // namespace

void SolverApp::computeConstraint() {
    constraint = sum(rhoPhys) / (grids.numberOfElements * volumeFraction) - 1.0;
}

void SolverApp::optimalityCriteriaUpdateOfRHO() {
    const double tolerance = passiveBlock.IsEmpty() ? TOLERANCE : TOLERANCE_WITH_PASSIVE_CELLS;
    const FixedCells fixed = findFixedCells();
    const auto excessOfVolume = [&](double multiplier) {
        designFor(multiplier, rhoNew);
        const double volume =
            passiveBlock.IsEmpty() ? addedVolume(rhoNew) : fixCellsAndAddVolume(fixed, rhoNew);
        return volume + constraint;
    };
    const double multiplier = findMultiplier(initialBracket(iteration, lambda, lambdaPrevious),
                                             tolerance, excessOfVolume);
    lambdaPrevious = lambda;
    lambda = multiplier;
    rho.swap(rhoNew);
}

// Looks up once what every step of the bisection asks of every cell.
SolverApp::FixedCells SolverApp::findFixedCells() const {
    FixedCells fixed;
    if (passiveBlock.IsEmpty()) return fixed;
    fixed.kind.resize(grids.numberOfElements);
    fixed.blobMask.resize(grids.numberOfElements);
    for (unsigned e = 0; e < grids.numberOfElements; ++e) {
        fixed.kind[e] = static_cast<int8_t>(passiveBlock.getFineGridElement(static_cast<int>(e)));
        fixed.blobMask[e] = blobMaskOfFineCell(e);
    }
    return fixed;
}

// The order of every min and max decides what becomes of a NaN: a cell that was passive
// void (density 0, hence no sensitivity) and is set free restarts at the move limit.
void SolverApp::designFor(double multiplier, DenseMatrix& design) const {
    const double* const x = rho.begin();
    const double* const compliance = dc.begin();
    const double* const volume = dv.begin();
    double* const xnew = design.begin();
    const double least = Emin;
    for (unsigned e = 0; e < grids.numberOfElements; ++e) {
        const double optimal = x[e] * std::sqrt(-compliance[e] / multiplier / volume[e]);
        xnew[e] = std::max(x[e] - MOVE_LIMIT,
                           std::min(x[e] + MOVE_LIMIT, std::max(least, std::min(1.0, optimal))));
    }
}

// The relative volume that a design adds to the present one, linearised.
double SolverApp::addedVolume(const DenseMatrix& design) const {
    double volume = 0.0;
    for (unsigned e = 0; e < grids.numberOfElements; ++e) {
        volume += (design(e, 0) - rho(e, 0)) * dv(e, 0);
    }
    return volume;
}

// The same after the passive cells of the design are put right. What the blob cuts out has no
// volume.
double SolverApp::fixCellsAndAddVolume(const FixedCells& fixed, DenseMatrix& design) const {
    double volume = 0.0;
    for (unsigned e = 0; e < grids.numberOfElements; ++e) {
        const int kind = fixed.kind[e];
        const double mask = fixed.blobMask[e];
        if (kind == PassiveBlock::VOID) design(e, 0) = 0.0;
        if (PassiveBlock::isSolid(kind)) design(e, 0) = 1.0;
        const double physical = mask > 0.0 ? 0.0 : design(e, 0);
        volume += (1.0 - mask) * (physical - rho(e, 0)) * dv(e, 0);
    }
    return volume;
}

void SolverApp::updatePhysicalDensities() {
    if (useDensityFilter) {
        H.apply(rho, rhoPhys);  // the blob is not cut out here
        return;
    }
    rhoPhys.set(rho.begin());
    if (blob.hasBlob <= 0) return;
    for (unsigned i = 0; i < grids.numberOfElements; ++i) {
        if (blobMaskOfFineCell(i) == 1.0) rhoPhys(i, 0) = 0.0;
    }
}

void SolverApp::adjustEminBasedOnMovementChanges() {
    if (movementChanged) {
        Emin = EMIN_START;
        movementChanged = false;
        loop = 1;
    } else if (iteration % EMIN_PERIOD == 0) {
        Emin = std::max(EminLowerLimit, EminFactor * Emin);
    }
}

double SolverApp::maxDelta(const DenseMatrix& a, const DenseMatrix& b) {
    const std::size_t size = std::size_t{a.getRows()} * a.getColumns();
    // Hosts look this report up by its line.
    VOXAM_ASSERT_AT("SparseMatrixLib/SolverApp.cpp", 843, size == b.getRows() * b.getColumns());
    double largest = 0.0;
    for (std::size_t i = 0; i < size; ++i) {
        largest = std::max(largest, std::fabs(a.begin()[i] - b.begin()[i]));
    }
    return largest;
}
