#include <algorithm>
#include <cmath>
#include <utility>

#include "SolverApp.h"

void SolverApp::updateSettings(const std::vector<TopologyOptimizationComponentData>& loads,
                               const std::vector<TopologyOptimizationComponentData>& supports,
                               float volumeFraction, const short* passiveData, int loadCaseCount,
                               const signed char* loadCaseIndices, const short* blobData) {
    // What can fail for want of memory comes first: then nothing has changed.
    auto newLoads = loads;
    auto newSupports = supports;
    std::set<int> newLoadCases;
    for (int k = 0; loadCaseIndices && k < loadCaseCount; ++k) {
        const int lc = loadCaseIndices[k];
        if (lc >= 0 && lc < numLoadCases) newLoadCases.insert(lc);
    }

    this->loads = std::move(newLoads);
    this->supports = std::move(newSupports);
    loadCases = std::move(newLoadCases);
    targetVolumeFraction = volumeFraction;
    passiveBlock.update(passiveData);
    movementChanged = true;

    setBlob(blobData);
    for (unsigned i = 0; i < numberOfElements; ++i) {
        rhoPhys(i, 0) = (1.0 - blobMaskOfFineCell(i)) * rho(i, 0);
    }
    resetBlobBookkeeping();
    message.clear();
}

void SolverApp::setBlob(const short* blobData) {
    blobMask.fill(0.0);
    const int count = blobData ? std::max<int>(blobData[0], 0) : 0;
    blobCellCount = count;
    for (int k = 1; k <= count; ++k) {
        const int x = blobData[2 * k - 1];
        const int y = blobData[2 * k];
        const bool onGrid =
            x >= 0 && static_cast<unsigned>(x) < nelx && y >= 0 && static_cast<unsigned>(y) < nely;
        if (onGrid) blobMask(static_cast<unsigned>(x) * nely + static_cast<unsigned>(y), 0) = 1.0;
    }
    hasBlob = blobCellCount > 0.0 ? 1 : 0;
}

void SolverApp::resetBlobBookkeeping() {
    constexpr double noObjectiveYet = 1e10;
    blobConverged = 0;
    blobConvergedPrevious = 0;
    blobCounter = 0;
    objectivePrevious = noObjectiveYet;
    objectivePrevious2 = noObjectiveYet;
    blobStage = 0;
    blobPreparedCount = 0.0;
    blobMoveCount = 0.0;
    blobIteration = 1;

    findBlobInterface(0);
    equivalentCircleMoI();
    interfaceSizeOfEquivalentCircle();

    // About a tenth of the interface of a disc of the blob's area, as an even number of elements.
    blobMoveLimitLarge = 0.0;
    blobMoveLimit = 2.0 * std::round(circleInterfaceSize * 0.2 * 0.5);
    blobMoveLimitMax = blobMoveLimit;
    blobMoveLimitFraction = blobMoveLimit;
}
