// One state solve: forces, stiffness, supports, displacements; then compliance and sensitivities.

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "SolverApp.h"
#include "SolverConstants.h"
#include "SolverSetup.h"
#include "kmat_exception.h"

using kmat::DenseMatrix;
using kmat::KmatException;

namespace {

// Beyond this the structure is not held, whatever the factorisation says.
constexpr double LARGEST_SENSIBLE = 1e15;
// Below this the loads do no work: they act on supports.
constexpr double SMALLEST_SENSIBLE = 1e-10;

// u' KE u of LANES elements. Their displacements lie side by side, those of the next local degree
// of freedom `stride` further on.
void energiesOfLanes(const double* matrix, const double* displacements, size_t stride,
                     double* energies) {
    std::array<double, LANES> ce{};
    for (size_t k = 0; k < ELEMENT_DOFS; ++k) {
        for (size_t l = 0; l < ELEMENT_DOFS; ++l) {
            const double stiffness = matrix[ELEMENT_DOFS * k + l];
            const double* uk = displacements + k * stride;
            const double* ul = displacements + l * stride;
            for (size_t i = 0; i < LANES; ++i) ce[i] += stiffness * uk[i] * ul[i];
        }
    }
    // Round-off may make an energy negative.
    for (size_t i = 0; i < LANES; ++i) energies[i] = std::max(0.0, ce[i]);
}

}  // namespace

bool SolverApp::solveStateCHOL() {
    if (!recordsFitPlate()) return false;
    buildForces();

    assembleTimer.start();
    assemble();
    assembleTimer.stop();

    for (const auto& support : supports) {
        const auto d = static_cast<unsigned>(fixedDof(support));
        K.getValue(d, d) = SUPPORT_STIFFNESS;
    }
    if (!factor.isInitialized()) factor = K.analyze();

    factorizeTimer.start();
    factor.factorize(K);
    const bool factorized = KmatException::getLastException() == nullptr;
    KmatException::clearLastException();
    factorizeTimer.stop();

    solveTimer.start();
    const bool solved = factorized && solveLoadCases();
    solveTimer.stop();
    return solved;
}

bool SolverApp::recordsFitPlate() const {
    const auto fits = [this](const TopologyOptimizationComponentData& load) {
        return isOnGrid(load, nodesX, nodesY) && load.loadCase >= 0 && load.loadCase < numLoadCases;
    };
    const auto holdsDof = [this](const TopologyOptimizationComponentData& support) {
        if (!isOnGrid(support, nodesX, nodesY)) return false;
        const long dof = fixedDof(support);
        return dof >= 0 && dof < static_cast<long>(ndof);
    };
    return std::all_of(loads.begin(), loads.end(), fits) &&
           std::all_of(supports.begin(), supports.end(), holdsDof);
}

// The direction is added and rounded in single precision: 0 holds x, 1 holds y.
long SolverApp::fixedDof(const TopologyOptimizationComponentData& support) const {
    const float dof = static_cast<float>(2 * nodeOf(support, nodesY)) + support.fx;
    return std::isfinite(dof) ? std::lround(dof) : -1;
}

void SolverApp::buildForces() {
    for (int lc : loadCases) F[lc].fill(0.0);
    for (const auto& load : loads) {
        const unsigned node = nodeOf(load, nodesY);
        F[load.loadCase](2 * node, 0) += load.fx;
        F[load.loadCase](2 * node + 1, 0) += load.fy;
    }
}

// A solve that fails leaves the displacements as they are.
bool SolverApp::solveLoadCases() {
    for (int lc : loadCases) {
        DenseMatrix u = kmat::solve(factor, F[lc]);
        if (u.getRows() != ndof) return false;
        U[lc] = std::move(u);
    }
    return true;
}

void SolverApp::setObjectivePlusSens() {
    objective = 0.0;
    dc.fill(0.0);
    dv.fill(0.0);
    blobSensitivity.fill(0.0);
    for (int lc : loadCases) addSensitivities(U[lc]);
}

void SolverApp::addSensitivities(const DenseMatrix& u) {
    const double volumeShare = 1.0 / (numberOfElements * volumeFraction);
    const unsigned blocks = subdivision * subdivision;
    for (unsigned ix = 0; ix < nelx; ++ix) {
        computeColumnEnergies(ix, u);
        for (unsigned iy = 0; iy < nely; ++iy) {
            const unsigned ci = nely * ix + iy;
            const double* energy = columnEnergies.data() + iy;
            for (unsigned b = 0; b < subdivision; ++b) {
                for (unsigned a = 0; a < subdivision; ++a, energy += paddedToLanes(nely)) {
                    const unsigned e = fineElement(ix, iy, a, b);
                    const double ce = *energy;
                    const double dE = (E0 - Emin) * penalty * powerLessOne[e];
                    compliances[e] = (Emin + power[e] * (E0 - Emin)) * ce;
                    dc(e, 0) -= (1.0 - blobMask(ci, 0)) * ce * dE;
                    blobSensitivity(ci, 0) += ce * dE * rho(e, 0) / blocks;
                    dv(e, 0) += volumeShare;
                }
            }
        }
    }
    addCompliances();
}

// Along the rows of the plate, across the order of storage: the order is part of the result.
void SolverApp::addCompliances() {
    for (unsigned iy = 0; iy < nely; ++iy) {
        for (unsigned ix = 0; ix < nelx; ++ix) {
            for (unsigned b = 0; b < subdivision; ++b) {
                for (unsigned a = 0; a < subdivision; ++a) {
                    objective += compliances[fineElement(ix, iy, a, b)];
                }
            }
        }
    }
}

// Strain energies of the sub-elements of one coarse column for unit modulus, block by block.
void SolverApp::computeColumnEnergies(unsigned ix, const DenseMatrix& u) {
    const size_t stride = paddedToLanes(nely);
    for (unsigned iy = 0; iy < nely; ++iy) {
        const ElementDofs dof = elementDofs(ix, iy, nodesY);
        for (size_t k = 0; k < ELEMENT_DOFS; ++k) {
            columnDisplacements[k * stride + iy] = u(dof[k], 0);
        }
    }
    const size_t blocks = size_t{subdivision} * subdivision;
    for (size_t m = 0; m < blocks; ++m) {
        for (size_t iy = 0; iy < stride; iy += LANES) {
            energiesOfLanes(KE.get() + m * ELEMENT_MATRIX_SIZE, columnDisplacements.data() + iy,
                            stride, columnEnergies.data() + m * stride + iy);
        }
    }
}

void SolverApp::computeConstraint() {
    constraint = sum(rhoPhys) / (numberOfElements * volumeFraction) - 1.0;
}

bool SolverApp::verifyValidLoadAndSupports() {
    double squaredDisplacements = 0.0;
    for (int lc : loadCases) squaredDisplacements += U[lc].dot(U[lc]);
    if (objective > LARGEST_SENSIBLE || squaredDisplacements / objective > LARGEST_SENSIBLE ||
        squaredDisplacements > LARGEST_SENSIBLE) {
        message = "Change load/support";
        return false;
    }
    if (objective < SMALLEST_SENSIBLE) {
        message = "Load cannot be on top of support";
        return false;
    }
    return true;
}
