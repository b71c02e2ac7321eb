#include "SolverGame.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

#include "CheckedProduct.h"
#include "GridNumbering.h"
#include "assertion.h"

using kmat::DenseMatrix;

namespace {

bool isFinite(float value) { return std::isfinite(value); }

unsigned notNegative(int size) { return static_cast<unsigned>(std::max(size, 0)); }

}  // namespace

SolverGame::SolverGame(int nelx, int nely, int ndopt, int ndvis,
                       const std::vector<TopologyOptimizationComponentData>& loads,
                       const std::vector<TopologyOptimizationComponentData>& supports,
                       int numberOfLoadCases)
    : equilibrium(notNegative(nelx), notNegative(nely), 1, numberOfLoadCases),
      nelem(checkedProduct({equilibrium.nelx, equilibrium.nely})),
      loadCases(equilibrium.F.size()),
      elementEnergy(new float[nelem]) {
    VOXAM_ASSERT(ndopt == 1);
    VOXAM_ASSERT(ndvis == 1);
    equilibrium.loads = loads;
    equilibrium.supports = supports;
    std::iota(loadCases.begin(), loadCases.end(), 0);
}

float SolverGame::solve(const float* densities, float* elementValues) {
    if (solveStateCHOL(densities)) return setObjective(densities, elementValues);
    zeroArray(nelem, elementValues);
    return FAILED_OBJECTIVE;
}

bool SolverGame::solveStateCHOL(const float* densities) {
    // 1. Forces.
    for (int lc : loadCases) equilibrium.U[lc].zero();
    if (!densities || !std::all_of(densities, densities + nelem, isFinite)) return false;
    // The factorisation of a plate that can move often succeeds by round-off, and yields a
    // plausible score: so the supports themselves decide.
    if (!equilibrium.locateRecords(Equilibrium::truncatedDof) || !equilibrium.isHeldAsRigidBody())
        return false;
    equilibrium.addLoads();

    // 2. Stiffness, with the supports added.
    assemble(densities);
    equilibrium.hold(Equilibrium::SupportStiffness::ADDS);

    // 3. Factor and displacements.
    return equilibrium.factorize() &&
           std::all_of(loadCases.begin(), loadCases.end(),
                       [this](int lc) { return equilibrium.solveLoadCase(lc); });
}

void SolverGame::assemble(const float* densities) {
    equilibrium.fillWithZeros();
    double* const values = equilibrium.K.getValues();
    for (unsigned e = 0; e < nelem; ++e) {
        // Linear in the density: only the objective penalises what is partly filled.
        const float Ee = Emin + (E0 - Emin) * densities[e];
        const int* entry = equilibrium.elementEntries[e].data();
        for (const auto& [a, b] : ELEMENT_UPPER_PAIRS) {
            // Rounded to single precision, or scores would differ from those that hosts keep.
            const double stiffness = equilibrium.KE[ELEMENT_DOFS * a + b];
            values[*entry++] += static_cast<float>(stiffness * Ee);
        }
    }
    equilibrium.analyzeOnce();
}

float SolverGame::setObjective(const float* densities, float* elementValues) {
    zeroArray(nelem, elementEnergy.get());
    float objective = 0.0F;
    for (int lc : loadCases) {
        addElementEnergies(densities, equilibrium.U[lc], objective);
    }
    if (elementValues) std::copy_n(elementEnergy.get(), nelem, elementValues);
    return objective;
}

void SolverGame::addElementEnergies(const float* densities, const DenseMatrix& u,
                                    float& objective) {
    // Widened before the difference is taken: only then is the weight at density 1 exactly 1.
    const double solid = E0;
    const double empty = Emin;
    const double* const KE = equilibrium.KE.get();
    const double* const displacement = u.begin();
    for (unsigned y = 0; y < equilibrium.nely; ++y) {
        for (unsigned x = 0; x < equilibrium.nelx; ++x) {
            const unsigned e = x * equilibrium.nely + y;
            const ElementDofs dof = elementDofs(x, y, equilibrium.nodesY);
            // Rounded after every term, for the same reason as the stiffness.
            float ce = 0.0F;
            for (std::size_t a = 0; a < ELEMENT_DOFS; ++a) {
                for (std::size_t b = 0; b < ELEMENT_DOFS; ++b) {
                    ce = static_cast<float>(ce + KE[ELEMENT_DOFS * a + b] * displacement[dof[a]] *
                                                     displacement[dof[b]]);
                }
            }
            const double w =
                empty + (solid - empty) * std::pow(static_cast<double>(densities[e]), penal);
            const double contribution = w * std::max(0.0, static_cast<double>(ce));
            objective = static_cast<float>(objective + contribution);
            elementEnergy[e] = static_cast<float>(elementEnergy[e] + contribution);
        }
    }
}

void SolverGame::zeroArray(int count, float* array) {
    if (array && count > 0) std::memset(array, 0, static_cast<std::size_t>(count) * sizeof(float));
}

void SolverGame::zeroArray(int count, double* array) {
    if (array && count > 0) std::memset(array, 0, static_cast<std::size_t>(count) * sizeof(double));
}
