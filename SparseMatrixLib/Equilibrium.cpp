#include "Equilibrium.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "CheckedProduct.h"
#include "ElementStiffnessMatrix.h"
#include "kmat_exception.h"

using kmat::DenseMatrix;
using kmat::KmatException;

Equilibrium::Equilibrium(unsigned nelx, unsigned nely, unsigned subdivision, int numLoadCases)
    : nelx(nelx),
      nely(nely),
      nodesX(checkedProduct({uint64_t{nelx} + 1})),
      nodesY(checkedProduct({uint64_t{nely} + 1})),
      ndof(checkedProduct({2, nodesX, nodesY})),
      KE(ElementStiffnessMatrix::createElementStiffnessMatrix(static_cast<int>(subdivision))),
      K(ndof, ndof, true, 0) {
    const auto caseCount = static_cast<unsigned>(std::max(numLoadCases, 0));
    checkedProduct({caseCount, ndof});  // before memory is taken for as many vectors
    for (unsigned k = 0; k < caseCount; ++k) {
        F.push_back(kmat::undefinedVector(ndof));
        U.push_back(kmat::undefinedVector(ndof));
    }
}

double Equilibrium::truncatedDof(unsigned node, float direction) {
    return 2.0 * node + std::trunc(direction);
}

bool Equilibrium::locateRecords(HeldDof heldDof) {
    heldDofs.clear();
    for (const auto& support : supports) {
        if (!isOnGrid(support)) return false;
        const double dof = heldDof(nodeOf(support), support.fx);
        if (!(dof >= 0.0 && dof < ndof)) return false;  // also when it is not a number
        heldDofs.push_back(static_cast<unsigned>(dof));
    }
    return std::all_of(loads.begin(), loads.end(),
                       [this](const auto& load) { return isValidLoad(load); });
}

bool Equilibrium::isOnGrid(const TopologyOptimizationComponentData& record) const {
    return record.x >= 0 && static_cast<unsigned>(record.x) < nodesX && record.y >= 0 &&
           static_cast<unsigned>(record.y) < nodesY;
}

bool Equilibrium::isValidLoad(const TopologyOptimizationComponentData& load) const {
    return isOnGrid(load) && load.loadCase >= 0 && load.loadCase < numLoadCases() &&
           std::isfinite(load.fx) && std::isfinite(load.fy);
}

unsigned Equilibrium::nodeOf(const TopologyOptimizationComponentData& record) const {
    return static_cast<unsigned>(record.x) * nodesY + static_cast<unsigned>(record.y);
}

// A rigid motion (tx, ty, w) displaces a node by (tx - w * y, ty + w * x): the supports must fix
// some x and some y displacement, and the rotation by two x supports in different rows or two y
// supports in different columns.
bool Equilibrium::isHeldAsRigidBody() const {
    std::vector<unsigned> xHeldInRow;
    std::vector<unsigned> yHeldInColumn;
    for (const unsigned dof : heldDofs) {
        const unsigned node = dof / 2;
        if (dof % 2 == 0)
            xHeldInRow.push_back(node % nodesY);
        else
            yHeldInColumn.push_back(node / nodesY);
    }
    const auto notAllEqual = [](const std::vector<unsigned>& v) {
        return std::any_of(v.begin(), v.end(), [&v](unsigned value) { return value != v.front(); });
    };
    return !xHeldInRow.empty() && !yHeldInColumn.empty() &&
           (notAllEqual(xHeldInRow) || notAllEqual(yHeldInColumn));
}

void Equilibrium::addLoads() {
    for (DenseMatrix& forces : F) forces.zero();
    for (const auto& load : loads) {
        const unsigned node = nodeOf(load);
        F[load.loadCase](2 * node, 0) += load.fx;
        F[load.loadCase](2 * node + 1, 0) += load.fy;
    }
}

bool Equilibrium::fillWithZeros() {
    if (assembled) {
        K.zero();
        return false;
    }
    K = stiffnessPattern(nelx, nely);
    elementEntries = findElementEntries(K, nelx, nely);
    assembled = true;
    return true;
}

void Equilibrium::hold(SupportStiffness rule) {
    for (const unsigned dof : heldDofs) {
        double& diagonal = K.getValue(dof, dof);
        if (rule == SupportStiffness::REPLACES) diagonal = 0.0;
        diagonal += SUPPORT_STIFFNESS;
    }
}

void Equilibrium::analyzeOnce() {
    if (!factor.isInitialized()) factor = K.analyze();
}

bool Equilibrium::factorize() {
    factor.factorize(K);
    const bool factorized = KmatException::getLastException() == nullptr;
    KmatException::clearLastException();
    return factorized;
}

bool Equilibrium::solveLoadCase(int loadCase) {
    DenseMatrix u = kmat::solve(factor, F[loadCase]);
    if (u.getRows() != ndof) return false;
    U[loadCase] = std::move(u);
    return true;
}
