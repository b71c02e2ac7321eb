// One state solve: forces, stiffness, supports, displacements; then compliance and sensitivities,
// and the filters of these.

#include <algorithm>
#include <cmath>

#include "SolverApp.h"

using kmat::DenseMatrix;

namespace {

// Beyond this the structure is not held, whatever the factorisation says.
constexpr double LARGEST_SENSIBLE = 1e15;
// Below this the loads do no work: they act on supports.
constexpr double SMALLEST_SENSIBLE = 1e-10;

// The direction is added and rounded in single precision: 0 holds x, 1 holds y.
double roundedDof(unsigned node, float direction) {
    return std::round(static_cast<float>(2 * node) + direction);
}

}  // namespace

bool SolverApp::solveStateCHOL() {
    // 1. Forces.
    if (!equilibrium.locateRecords(roundedDof)) return false;
    equilibrium.addLoads();

    // 2. Stiffness, with the supports imposed.
    timers.assembleTimer.start();
    assemble();
    timers.assembleTimer.stop();
    equilibrium.hold(Equilibrium::SupportStiffness::REPLACES);

    // 3. Factor.
    equilibrium.analyzeOnce();
    timers.factorizeTimer.start();
    const bool factorized = equilibrium.factorize();
    timers.factorizeTimer.stop();

    // 4. Displacements.
    timers.solveTimer.start();
    const bool solved =
        factorized && std::all_of(loadCases.begin(), loadCases.end(),
                                  [this](int lc) { return equilibrium.solveLoadCase(lc); });
    timers.solveTimer.stop();
    return solved;
}

void SolverApp::setObjectivePlusSens() {
    objective = 0.0;
    dc.fill(0.0);
    dv.fill(0.0);
    blob.blobSensitivity.fill(0.0);
    for (int lc : loadCases) addSensitivities(equilibrium.U[lc]);
}

// The volume's sensitivity is added once for each load case, like the compliance's, because the
// update takes the ratio of the two. So it also counts a change of volume once for each.
void SolverApp::addSensitivities(const DenseMatrix& u) {
    const unsigned subdivision = grids.subdivision;
    const unsigned blocks = subdivision * subdivision;
    const double volumeShare = 1.0 / (grids.numberOfElements * volumeFraction);
    for (unsigned ix = 0; ix < grids.nelx; ++ix) {
        strainEnergies.compute(equilibrium, ix, u);
        for (unsigned iy = 0; iy < grids.nely; ++iy) {
            const unsigned ci = grids.coarseElement(ix, iy);
            for (unsigned m = 0; m < blocks; ++m) {
                const unsigned e = grids.fineElement(ix, iy, m % subdivision, m / subdivision);
                const double ce = strainEnergies.get(iy, m);
                const double dE = (E0 - Emin) * penalty * powers.powerLessOne[e];
                compliances[e] = modulus(e, Emin) * ce;
                dc(e, 0) -= (1.0 - blob.blobMask(ci, 0)) * ce * dE;
                blob.blobSensitivity(ci, 0) += ce * dE * rho(e, 0) / blocks;
                dv(e, 0) += volumeShare;
            }
        }
    }
    addCompliances();
}

// Along the rows of the plate, across the order of storage: the order is part of the result.
void SolverApp::addCompliances() {
    const unsigned subdivision = grids.subdivision;
    for (unsigned iy = 0; iy < grids.nely; ++iy) {
        for (unsigned ix = 0; ix < grids.nelx; ++ix) {
            for (unsigned b = 0; b < subdivision; ++b) {
                for (unsigned a = 0; a < subdivision; ++a) {
                    objective += compliances[grids.fineElement(ix, iy, a, b)];
                }
            }
        }
    }
}

// All tests are comparisons that a compliance which is no number passes.
bool SolverApp::verifyValidLoadAndSupports() {
    double squaredDisplacements = 0.0;
    for (int lc : loadCases) squaredDisplacements += equilibrium.U[lc].dot(equilibrium.U[lc]);
    if (objective > LARGEST_SENSIBLE || squaredDisplacements / objective > LARGEST_SENSIBLE ||
        squaredDisplacements > LARGEST_SENSIBLE) {
        return fail("Change load/support");
    }
    if (objective < SMALLEST_SENSIBLE) return fail("Load cannot be on top of support");
    return true;
}

void SolverApp::filterSensitivities() {
    if (useDensityFilter) {
        H.apply(dc, dcFiltered);
        H.apply(dv, dvFiltered);
        dc.set(dcFiltered.begin());
        dv.set(dvFiltered.begin());
        return;
    }
    dc.elemMultiply(rho);
    H.apply(dc, dcFiltered);
    // No guard on the density: it is 0 only in passive void cells. One that is set free brings a
    // value that is no number, and the update knows how to deal with it.
    dcFiltered.elemDivide(rho, dc);
}

void SolverApp::filterBlobSensitivities() {
    if (!useDensityFilter) blob.filterBlobSensitivities();
}
