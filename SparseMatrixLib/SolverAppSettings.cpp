// What the host can change while the optimiser runs.

#include <utility>

#include "SolverApp.h"

void SolverApp::updateSettings(const std::vector<TopologyOptimizationComponentData>& loads,
                               const std::vector<TopologyOptimizationComponentData>& supports,
                               float askedVolumeFraction, const short* passiveData,
                               int loadCaseCount, const signed char* loadCaseIndices,
                               const short* blobData) {
    // All memory is taken first: where it is short, nothing has changed yet.
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

    blob.restart(blobData, passiveBlock);
    for (unsigned i = 0; i < grids.numberOfElements; ++i) {
        rhoPhys(i, 0) = (1.0 - blobMaskOfFineCell(i)) * rho(i, 0);
    }
    withdrawMessage();
}

double SolverApp::blobMaskOfFineCell(unsigned fineCell) const {
    const auto cell = static_cast<unsigned>(getCoarseGridIndex(static_cast<int>(fineCell)));
    return cell < grids.numberOfCoarseElements ? blob.blobMask(cell, 0) : 0.0;
}
