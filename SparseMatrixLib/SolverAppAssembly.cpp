// The stiffness of the present densities.

#include "ParallelFor.h"
#include "SolverApp.h"

namespace {

// Stiffness floor of a passive void cell. The first assembly takes the single-precision constant,
// the refills the double one; the slight difference is part of every
// result with such cells.
constexpr double VOID_FLOOR_FIRST = 1e-9F;
constexpr double VOID_FLOOR = 1e-9;

}  // namespace

void SolverApp::assemble() {
    // Not in parallel at first: starting the threads would delay the first picture.
    const bool isFirst = equilibrium.fillWithZeros();
    computePowers(!isFirst);
    if (isFirst) {
        for (unsigned ix = 0; ix < grids.nelx; ++ix) addColumn(ix, VOID_FLOOR_FIRST);
        return;
    }
    if (grids.nelx == 0) return;
    // The elements of a column touch only the nodes of its two sides, so the even columns share no
    // node with each other, nor do the odd ones: within a pass no entry is written twice.
    const unsigned tasks = (grids.nelx - 1) / 2 + 1;
    for (unsigned first : {0U, 1U}) {
        parallelFor(tasks, [this, first](std::size_t i) {
            const auto ix = static_cast<unsigned>(2 * i) + first;
            if (ix < grids.nelx) addColumn(ix, VOID_FLOOR);
        });
    }
}

void SolverApp::computePowers(bool inParallel) {
    const auto computeColumn = [this](std::size_t ix) {
        powers.computeColumn(grids, ix, rhoPhys, penalty);
    };
    if (inParallel)
        parallelFor(grids.nelx, computeColumn);
    else
        for (unsigned ix = 0; ix < grids.nelx; ++ix) computeColumn(ix);
}

// Adds the elements of one coarse column to the values of K.
void SolverApp::addColumn(unsigned ix, double voidFloor) {
    const bool withPassiveVoid = passiveBlock.hasPassiveVoid();
    const unsigned subdivision = grids.subdivision;
    double* const values = equilibrium.K.getValues();
    for (unsigned iy = 0; iy < grids.nely; ++iy) {
        const ElementEntries& entries = equilibrium.elementEntries[grids.coarseElement(ix, iy)];
        std::array<double, ELEMENT_UPPER_ENTRIES> sums;
        for (std::size_t i = 0; i < sums.size(); ++i) sums[i] = values[entries[i]];
        const double* upper = KEUpper.data();
        for (unsigned b = 0; b < subdivision; ++b) {
            for (unsigned a = 0; a < subdivision; ++a, upper += ELEMENT_UPPER_ENTRIES) {
                const unsigned e = grids.fineElement(ix, iy, a, b);
                const bool isVoid = withPassiveVoid && passiveBlock.isVoid(static_cast<int>(e));
                const double E = modulus(e, isVoid ? voidFloor : Emin);
                for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += upper[i] * E;
            }
        }
        for (std::size_t i = 0; i < sums.size(); ++i) values[entries[i]] = sums[i];
    }
}

// SIMP interpolation above a stiffness floor.
double SolverApp::modulus(unsigned e, double floor) const {
    return (E0 - floor) * powers.power[e] + floor;
}
