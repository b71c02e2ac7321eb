// What the host can change while the optimiser runs.

#include <algorithm>
#include <utility>

#include "SolverApp.h"

void SolverApp::updateSettings(const std::vector<TopologyOptimizationComponentData>& loads,
                               const std::vector<TopologyOptimizationComponentData>& supports,
                               float askedVolumeFraction, const short* passiveData,
                               int loadCaseCount, const signed char* loadCaseIndices,
                               const short* blobData) {
    // The copies of the host's lists may fail for want of memory: then nothing has changed yet.
    auto newLoads = loads;
    auto newSupports = supports;
    std::set<int> newLoadCases;
    for (int k = 0; loadCaseIndices && k < loadCaseCount; ++k) {
        const int lc = loadCaseIndices[k];
        if (lc >= 0 && lc < equilibrium.numLoadCases()) newLoadCases.insert(lc);
    }

    equilibrium.loads = std::move(newLoads);
    equilibrium.supports = std::move(newSupports);
    loadCases = std::move(newLoadCases);
    targetVolumeFraction = askedVolumeFraction;
    passiveBlock.update(passiveData);
    movementChanged = true;

    setBlob(blobData);
    for (unsigned i = 0; i < grids.numberOfElements; ++i) {
        rhoPhys(i, 0) = (1.0 - blobMaskOfFineCell(i)) * rho(i, 0);
    }
    withdrawMessage();
}

void SolverApp::setBlob(const short* blobData) {
    blobMask.fill(0.0);
    const int count = blobData ? std::max<int>(blobData[0], 0) : 0;
    for (int k = 1; k <= count; ++k) {
        // A negative coordinate lies far outside as an unsigned one.
        const auto x = static_cast<unsigned>(blobData[2 * k - 1]);
        const auto y = static_cast<unsigned>(blobData[2 * k]);
        if (x < grids.nelx && y < grids.nely) blobMask(grids.coarseElement(x, y), 0) = 1.0;
    }
    hasBlob = count > 0 ? 1 : 0;
    blob.restart(count, blobMask, passiveBlock);
}

double SolverApp::blobMaskOfFineCell(unsigned fineCell) const {
    const auto cell = static_cast<unsigned>(getCoarseGridIndex(static_cast<int>(fineCell)));
    return cell < grids.numberOfCoarseElements ? blobMask(cell, 0) : 0.0;
}
