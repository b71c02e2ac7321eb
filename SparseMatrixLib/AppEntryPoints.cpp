#include <cmath>
#include <memory>

#include "ExportGuard.h"
#include "HostOutput.h"
#include "LibraryVersion.h"
#include "MessageBuffer.h"
#include "SolverApp.h"
#include "voxam.h"

namespace {

// Never destroyed: a host may call in an exit handler.
std::unique_ptr<SolverApp>& solverApp = *new std::unique_ptr<SolverApp>;

// The last creation, also when its optimiser is gone. While the width is 0 no banner was printed.
int currentTextureWidth = 0;
int currentTextureHeight = 0;
int restartId = 0;

constexpr double NO_RESULT = -1.0;

// Runs one iteration of either kind; `iterate` gets a place for the change.
template <typename Iterate>
double runGuarded(int messageLength, char* messageBuffer, double* change, float penalty,
                  const Iterate& iterate) {
    return guardExport(
        [&]() -> double {
            if (!solverApp) {
                writeText("No optimiser: call _InitVoxamApp first", messageLength, messageBuffer);
                return NO_RESULT;
            }
            double unused = 0.0;
            solverApp->setPenalty(penalty);
            return iterate(change ? *change : unused);
        },
        [&](const char* text) {
            writeText(text, messageLength, messageBuffer);
            return NO_RESULT;
        });
}

}  // namespace

void _InitVoxamApp(int textureWidth, int textureHeight, int subdivision, int meshFactor,
                   float volumeFraction, int numLoadCases, int newRestartId) {
    guardExport([&] {
        if (currentTextureWidth == 0) {
            HostLine() << "VoxamApp386 lib version " << libVersion;
        }
        const bool keep = solverApp && textureWidth == currentTextureWidth &&
                          textureHeight == currentTextureHeight && newRestartId == restartId;
        restartId = newRestartId;
        if (keep) {
            if (std::isfinite(volumeFraction)) solverApp->setVolumeFraction(volumeFraction);
        } else {
            currentTextureWidth = textureWidth;
            currentTextureHeight = textureHeight;
            // The old optimiser goes first: when the new one cannot be built there is none.
            solverApp.reset();
            solverApp = std::make_unique<SolverApp>(
                static_cast<unsigned>(textureWidth), static_cast<unsigned>(textureHeight),
                static_cast<unsigned>(subdivision), static_cast<unsigned>(meshFactor),
                volumeFraction, numLoadCases);
        }
        solverApp->restartIteration();
    });
}

void _UpdateVoxamApp(int loadCount, const float* loadData, int supportCount,
                     const float* supportData, float volumeFraction, const short* passiveData,
                     int loadCaseCount, const char* loadCaseIndices, const short* blobData) {
    guardExport([&] {
        if (!solverApp) return;
        const auto loads = TopologyOptimizationComponentData::load(loadData, loadCount);
        const auto supports = TopologyOptimizationComponentData::load(supportData, supportCount);
        // Signed on every platform, whatever plain char is.
        const auto* indices = reinterpret_cast<const signed char*>(loadCaseIndices);
        solverApp->updateSettings(loads, supports, volumeFraction, passiveData, loadCaseCount,
                                  indices, blobData);
    });
}

double _IterateVoxamApp(int messageLength, char* messageBuffer, float* output, double* change,
                        RuntimeStat* stat, float penalty) {
    return runGuarded(messageLength, messageBuffer, change, penalty, [&](double& changeResult) {
        return solverApp->runIteration(messageLength, messageBuffer, output, changeResult, stat);
    });
}

double _IterateVoxamAppWithBlob(int messageLength, char* messageBuffer, float* output,
                                double* change, RuntimeStat* stat, int* blobResult, float penalty) {
    return runGuarded(messageLength, messageBuffer, change, penalty, [&](double& changeResult) {
        return solverApp->runIterationWithBlob(messageLength, messageBuffer, output, changeResult,
                                               stat, blobResult);
    });
}

void _DestroyVoxamApp() {
    guardExport([] { solverApp.reset(); });
}
