#include <memory>

#include "ExportGuard.h"
#include "HostOutput.h"
#include "LibraryVersion.h"
#include "SolverGame.h"
#include "voxam.h"

namespace {

// Never destroyed: a host may call in an exit handler.
std::unique_ptr<SolverGame>& solverGame = *new std::unique_ptr<SolverGame>;

void printBannerOnce() {
    static bool initialized = false;
    if (initialized) return;
    initialized = true;
    HostLine() << "VoxamApp386Game lib version " << libVersion;
}

}  // namespace

void _InitVoxamGame(int nelx, int nely, int ndopt, int ndvis, int loadCount, const float* loadData,
                    int supportCount, const float* supportData, int numberOfLoadCases) {
    guardExport([&] {
        printBannerOnce();
        // The old solver goes first: when the new one cannot be built there is none.
        solverGame.reset();
        const auto loads = TopologyOptimizationComponentData::load(loadData, loadCount);
        const auto supports = TopologyOptimizationComponentData::load(supportData, supportCount);
        solverGame = std::make_unique<SolverGame>(nelx, nely, ndopt, ndvis, loads, supports,
                                                  numberOfLoadCases);
    });
}

double _SolveVoxamGame(const float* densities, float* elementValues) {
    return guardExport(
        [&]() -> double {
            return solverGame ? solverGame->solve(densities, elementValues)
                              : SolverGame::FAILED_OBJECTIVE;
        },
        [&](const char*) -> double {
            SolverGame::zeroArray(solverGame->getNumberOfElements(), elementValues);
            return SolverGame::FAILED_OBJECTIVE;
        });
}

void _DestroyVoxamGame() {
    guardExport([] { solverGame.reset(); });
}

void printVoxamData(const std::vector<TopologyOptimizationComponentData>& records,
                    const std::string& title) {
    guardExport([&] {
        HostLine() << title;
        for (TopologyOptimizationComponentData record : records) record.print();
    });
}
