#include "SolverGame.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <utility>

#include "ElementStiffnessMatrix.h"
#include "GridNumbering.h"
#include "SolverSetup.h"
#include "assertion.h"
#include "kmat_exception.h"

using kmat::DenseMatrix;

namespace {

constexpr float FAILED_OBJECTIVE = std::numeric_limits<float>::max();

}  // namespace

SolverGame::SolverGame(int nelx, int nely, int ndopt, int ndvis,
                       const std::vector<TopologyOptimizationComponentData>& loads,
                       const std::vector<TopologyOptimizationComponentData>& supports,
                       int numberOfLoadCases)
    : nelx(static_cast<unsigned>(std::max(nelx, 0))),
      nely(static_cast<unsigned>(std::max(nely, 0))),
      nodesX(this->nelx + 1),
      nodesY(this->nely + 1),
      ndof(checkedProduct({2, nodesX, nodesY})),
      nelem(checkedProduct({this->nelx, this->nely})),
      reserved(1.3F),
      E0(1.0F),
      Emin(1e-13F),
      penal(3.0),
      loads(loads),
      supports(supports),
      K(ndof, ndof, true, clampedCapacity({nelem, ELEMENT_UPPER_ENTRIES})),
      isAnalyzed(false) {
    VOXAM_ASSERT(ndopt == 1);
    VOXAM_ASSERT(ndvis == 1);
    elementEnergy.reset(new float[nelem]);
    const auto caseCount = static_cast<unsigned>(std::max(numberOfLoadCases, 0));
    checkedProduct({caseCount, ndof});  // before memory is taken for as many vectors
    loadCases.resize(caseCount);
    std::iota(loadCases.begin(), loadCases.end(), 0);
    for (size_t k = 0; k < loadCases.size(); ++k) {
        U.push_back(undefinedVector(ndof));
        F.push_back(undefinedVector(ndof));
    }
    KE.reset(ElementStiffnessMatrix::createElementStiffnessMatrix(1));
}

float SolverGame::solve(const float* densities, float* elementValues) {
    if (solveStateCHOL(densities)) return setObjective(densities, elementValues);
    zeroArray(nelem, elementValues);
    return FAILED_OBJECTIVE;
}

bool SolverGame::solveStateCHOL(const float* densities) {
    for (int lc : loadCases) {
        U[lc].zero();
        F[lc].zero();
    }
    if (!densities || !recordsFitPlate() || !supportsHoldPlate()) return false;
    applyLoads();
    assemble(densities);
    for (const auto& support : supports) {
        const unsigned d = fixedDof(support);
        K.getValue(d, d) += SUPPORT_STIFFNESS;
    }
    factor.factorize(K);
    if (kmat::KmatException::getLastException()) {
        kmat::KmatException::clearLastException();
        return false;
    }
    for (int lc : loadCases) {
        DenseMatrix u = kmat::solve(factor, F[lc]);
        if (u.getRows() != ndof) return false;
        U[lc] = std::move(u);
    }
    return true;
}

bool SolverGame::recordsFitPlate() const {
    const auto fits = [this](const TopologyOptimizationComponentData& load) {
        return isOnGrid(load, nodesX, nodesY) && load.loadCase >= 0 &&
               load.loadCase < static_cast<int>(F.size());
    };
    const auto holdsDof = [this](const TopologyOptimizationComponentData& support) {
        if (!isOnGrid(support, nodesX, nodesY)) return false;
        const double dof = 2.0 * nodeOf(support, nodesY) + std::trunc(support.fx);
        return dof >= 0.0 && dof < ndof;
    };
    return std::all_of(loads.begin(), loads.end(), fits) &&
           std::all_of(supports.begin(), supports.end(), holdsDof);
}

// Every element has at least the stiffness Emin, so the plate can only move as a rigid body. With
// CHOLMOD's LDL' the factorisation of such a singular matrix often succeeds by round-off, so this
// is decided from the supports themselves. A rigid motion (tx, ty, w) displaces a node by (tx - w *
// y, ty + w * x): the supports must fix some x and some y displacement, and the rotation by two x
// supports in different rows or two y supports in different columns.
bool SolverGame::supportsHoldPlate() const {
    std::vector<unsigned> xHeldInRow;
    std::vector<unsigned> yHeldInColumn;
    for (const auto& support : supports) {
        const unsigned dof = fixedDof(support);
        const unsigned heldNode = dof / 2;
        if (dof % 2 == 0)
            xHeldInRow.push_back(heldNode % nodesY);
        else
            yHeldInColumn.push_back(heldNode / nodesY);
    }
    const auto notAllEqual = [](const std::vector<unsigned>& v) {
        return std::any_of(v.begin(), v.end(), [&v](unsigned value) { return value != v.front(); });
    };
    return !xHeldInRow.empty() && !yHeldInColumn.empty() &&
           (notAllEqual(xHeldInRow) || notAllEqual(yHeldInColumn));
}

void SolverGame::applyLoads() {
    for (const auto& load : loads) {
        const unsigned node = nodeOf(load, nodesY);
        F[load.loadCase](2 * node, 0) += load.fx;
        F[load.loadCase](2 * node + 1, 0) += load.fy;
    }
}

// The direction is truncated towards zero: 0.9 and -0.5 hold x, 1.7 holds y.
unsigned SolverGame::fixedDof(const TopologyOptimizationComponentData& support) const {
    return 2 * nodeOf(support, nodesY) + static_cast<unsigned>(static_cast<int>(support.fx));
}

void SolverGame::assemble(const float* densities) {
    const bool first = !isAnalyzed;
    if (first)
        elementEntries = buildStiffnessPattern(K, nelx, nely);
    else
        K.zero();
    double* const values = K.getValues();
    for (unsigned e = 0; e < nelem; ++e) {
        // Linear in the density on purpose: the penalisation is the objective's alone.
        const float Ee = Emin + (E0 - Emin) * densities[e];
        const int* entry = elementEntries[e].data();
        for (const auto& [a, b] : ELEMENT_UPPER_PAIRS) {
            values[*entry++] += static_cast<float>(KE[ELEMENT_DOFS * a + b] * Ee);
        }
    }
    if (!first) return;
    factor = K.analyze();
    isAnalyzed = factor.isInitialized();
}

float SolverGame::setObjective(const float* densities, float* elementValues) {
    zeroArray(nelem, elementEnergy.get());
    float objective = 0.0F;
    for (int lc : loadCases) {
        addElementEnergies(densities, U[lc], objective);
    }
    if (elementValues) std::copy_n(elementEnergy.get(), nelem, elementValues);
    return objective;
}

void SolverGame::addElementEnergies(const float* densities, const DenseMatrix& u,
                                    float& objective) {
    // Widened before the difference is taken: only then is the weight at density 1 exactly 1.
    const double E0 = this->E0;
    const double Emin = this->Emin;
    const double* displacement = u.begin();
    for (unsigned y = 0; y < nely; ++y) {
        for (unsigned x = 0; x < nelx; ++x) {
            const unsigned e = x * nely + y;
            const ElementDofs dof = elementDofs(x, y, nodesY);
            // Single precision on purpose: the sum is rounded after every term.
            float ce = 0.0F;
            for (size_t a = 0; a < ELEMENT_DOFS; ++a) {
                for (size_t b = 0; b < ELEMENT_DOFS; ++b) {
                    ce = static_cast<float>(ce + KE[ELEMENT_DOFS * a + b] * displacement[dof[a]] *
                                                     displacement[dof[b]]);
                }
            }
            const double w =
                Emin + (E0 - Emin) * std::pow(static_cast<double>(densities[e]), penal);
            const double contribution = w * std::max(0.0, static_cast<double>(ce));
            objective = static_cast<float>(objective + contribution);
            elementEnergy[e] = static_cast<float>(elementEnergy[e] + contribution);
        }
    }
}

void SolverGame::zeroArray(int count, float* array) {
    if (array && count > 0) std::memset(array, 0, static_cast<size_t>(count) * sizeof(float));
}

void SolverGame::zeroArray(int count, double* array) {
    if (array && count > 0) std::memset(array, 0, static_cast<size_t>(count) * sizeof(double));
}
