#include "SolverApp.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>

#include "ElementStiffnessMatrix.h"
#include "GridNumbering.h"
#include "SolverConstants.h"
#include "SolverSetup.h"

namespace {

// Room for the first triplets of a filter that is not built yet.
constexpr int FILTER_CAPACITY = 200;

kmat::SparseMatrix emptyFilter() { return {0, 0, true, FILTER_CAPACITY}; }

}  // namespace

SolverApp::SolverApp(unsigned nelx, unsigned nely, unsigned subdivision, unsigned meshFactor,
                     float volumeFraction, int numLoadCases)
    : assembled(false),
      nelx(nelx),
      nely(nely),
      nodesX(checkedProduct({uint64_t{nelx} + 1})),
      nodesY(checkedProduct({uint64_t{nely} + 1})),
      numberOfCoarseElements(checkedProduct({nelx, nely})),
      ndof(checkedProduct({2, nodesX, nodesY})),
      meshFactor(meshFactor),
      subdivision(subdivision),
      numberOfElements(checkedProduct({nelx, nely, subdivision, subdivision})),
      numberOfMeshElements(checkedProduct({numberOfElements, meshFactor, meshFactor})),
      useHeaviside(true),
      iteration(0),
      loop(0),
      volumeFraction(volumeFraction),
      targetVolumeFraction(volumeFraction),
      rmin(3.0),
      meshRmin(meshFactor),
      penalty(3.0),
      objective(0.0),
      constraint(0.0),
      rhoPhys(undefinedVector(numberOfElements)),
      rho(undefinedVector(numberOfElements)),
      rhoOld(undefinedVector(numberOfElements)),
      meshRho(undefinedVector(numberOfMeshElements)),
      meshRhoFiltered(undefinedVector(numberOfMeshElements)),
      dc(undefinedVector(numberOfElements)),
      dv(undefinedVector(numberOfElements)),
      dcFiltered(undefinedVector(numberOfElements)),
      dvFiltered(undefinedVector(numberOfElements)),
      // A first guess only; that it takes the mesh refinement into account is of no consequence.
      K(ndof, ndof, true,
        clampedCapacity({nelx, nely, subdivision, meshFactor, ELEMENT_UPPER_ENTRIES})),
      H(emptyFilter()),
      Hs(undefinedVector(numberOfElements)),
      meshH(emptyFilter()),
      meshHs(undefinedVector(numberOfMeshElements)),
      rhoNew(undefinedVector(numberOfElements)),
      fineWork(undefinedVector(numberOfElements)),
      rminBlob(1.2F),
      circleInterfaceSize(0.0),
      objectivePrevious(0.0),
      objectivePrevious2(0.0),
      blobCellCount(0.0),
      blobInterfaceSize(0.0),
      circleMoI(0.0),
      circleRadiusSquared(0.0),
      blobMoveLimit(0.0),
      blobMoveLimitMax(0.0),
      blobMoveLimitFraction(0.0),
      blobMoveLimitLarge(0.0),
      blobMoveCount(0.0),
      blobPreparedCount(0.0),
      blobCounter(0),
      blobConverged(0),
      blobConvergedPrevious(0),
      hasBlob(0),
      blobStage(0),
      blobIteration(0),
      blobMask(undefinedVector(numberOfCoarseElements)),
      circleMask(undefinedVector(numberOfCoarseElements)),
      blobInterface(undefinedVector(numberOfCoarseElements)),
      circleInterface(undefinedVector(numberOfCoarseElements)),
      blobMaskFiltered(undefinedVector(numberOfCoarseElements)),
      circleMaskFiltered(undefinedVector(numberOfCoarseElements)),
      Hcoarse(emptyFilter()),
      HsCoarse(undefinedVector(numberOfCoarseElements)),
      blobH(emptyFilter()),
      blobHs(undefinedVector(numberOfCoarseElements)),
      blobSensitivity(undefinedVector(numberOfCoarseElements)),
      blobSensitivityFiltered(undefinedVector(numberOfCoarseElements)),
      movementChanged(false),
      numLoadCases(numLoadCases),
      passiveBlock(nelx, nely, subdivision * meshFactor, subdivision),
      useDensityFilter(0),
      E0(1.0),
      Emin(EMIN_START),
      EminFactor(0.25),
      EminLowerLimit(1e-7F),
      lambda(0.0),
      lambdaPrevious(0.0),
      HNonZero(emptyFilter()),
      HcoarseNonZero(emptyFilter()),
      meshHNonZero(emptyFilter()),
      coarseWork(undefinedVector(numberOfCoarseElements)) {
    if (!std::isfinite(volumeFraction)) throw std::invalid_argument("volume fraction not finite");
    // Before memory is taken for as many vectors.
    checkedProduct({static_cast<unsigned>(std::max(numLoadCases, 0)), ndof});
    for (int k = 0; k < numLoadCases; ++k) {
        F.push_back(undefinedVector(ndof));
        U.push_back(undefinedVector(ndof));
    }
    KE.reset(ElementStiffnessMatrix::createElementStiffnessMatrix(static_cast<int>(subdivision)));
    makeWorkSpace();
    setFilterMat();
    setFilterMatBlob();
    reset();
}

void SolverApp::makeWorkSpace() {
    const size_t blocks = size_t{subdivision} * subdivision;
    KEUpper.reserve(blocks * ELEMENT_UPPER_ENTRIES);
    for (size_t m = 0; m < blocks; ++m) {
        const double* matrix = KE.get() + m * ELEMENT_MATRIX_SIZE;
        for (const auto& [k, l] : ELEMENT_UPPER_PAIRS)
            KEUpper.push_back(matrix[ELEMENT_DOFS * k + l]);
    }
    power.resize(numberOfElements);
    powerLessOne.resize(numberOfElements);
    columnDisplacements.resize(ELEMENT_DOFS * paddedToLanes(nely));
    columnEnergies.resize(blocks * paddedToLanes(nely));
    compliances.resize(numberOfElements);
    passiveKinds.resize(numberOfElements);
    fineBlobMask.resize(numberOfElements);
}

void SolverApp::reset() {
    rho.fill(volumeFraction);
    rhoPhys.fill(volumeFraction);
}

void SolverApp::restartIteration() {
    iteration = 0;
    loop = 0;
}

int SolverApp::getCoarseGridIndex(int i) const {
    return coarseCellOfFineCell(static_cast<unsigned>(i), subdivision * meshFactor, subdivision,
                                nely);
}

// The fine element at column a and row b of coarse element (ix, iy).
unsigned SolverApp::fineElement(unsigned ix, unsigned iy, unsigned a, unsigned b) const {
    return ((subdivision * ix + a) * nely + iy) * subdivision + b;
}

double SolverApp::blobMaskOfFineCell(unsigned fineCell) const {
    const auto cell = static_cast<unsigned>(getCoarseGridIndex(static_cast<int>(fineCell)));
    return cell < numberOfCoarseElements ? blobMask(cell, 0) : 0.0;
}

double SolverApp::sum(const kmat::DenseMatrix& v) {
    return std::accumulate(v.begin(), v.end(), 0.0);
}
