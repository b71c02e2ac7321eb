#include <memory>
#include <string>

#include "ExportGuard.h"
#include "MessageBuffer.h"
#include "SolverAnalysis.h"
#include "voxam.h"

namespace {

using Status = SolverAnalysis::Status;

static_assert(static_cast<int>(Status::SOLVED) == VOXAM_ANALYSIS_SOLVED);
static_assert(static_cast<int>(Status::LOOSE_PART) == VOXAM_ANALYSIS_LOOSE_PART);
static_assert(static_cast<int>(Status::LOAD_WITHOUT_MATERIAL) ==
              VOXAM_ANALYSIS_LOAD_WITHOUT_MATERIAL);
static_assert(static_cast<int>(Status::MECHANISM) == VOXAM_ANALYSIS_MECHANISM);
static_assert(static_cast<int>(Status::INVALID) == VOXAM_ANALYSIS_INVALID);
static_assert(static_cast<int>(Status::OUT_OF_MEMORY) == VOXAM_ANALYSIS_OUT_OF_MEMORY);
static_assert(static_cast<int>(Status::NOT_CONVERGED) == VOXAM_ANALYSIS_NOT_CONVERGED);
static_assert(static_cast<int>(Status::NONE) == VOXAM_ANALYSIS_NONE);

// Deliberately never destroyed: a host may call in an exit handler.
std::unique_ptr<SolverAnalysis>& solverAnalysis = *new std::unique_ptr<SolverAnalysis>;

// Why there is no analysis.
Status reasonOfNone = Status::NONE;

int answer(Status status, std::string_view text, int messageLength, char* messageBuffer) {
    writeText(text, messageLength, messageBuffer);
    return static_cast<int>(status);
}

}  // namespace

void _InitVoxamAnalysis(int nelx, int nely, int loadCount, const float* loadData, int supportCount,
                        const float* supportData, int numberOfLoadCases) {
    guardExport([&] {
        // The old analysis goes first: when the new one cannot be built there is none.
        solverAnalysis.reset();
        reasonOfNone = Status::OUT_OF_MEMORY;
        const auto loads = TopologyOptimizationComponentData::load(loadData, loadCount);
        const auto supports = TopologyOptimizationComponentData::load(supportData, supportCount);
        solverAnalysis =
            std::make_unique<SolverAnalysis>(nelx, nely, loads, supports, numberOfLoadCases);
    });
}

int _SolveVoxamAnalysis(const double* moduli, int messageLength, char* messageBuffer,
                        double* compliances, double* displacements, double* energies,
                        double* stresses, unsigned char* looseElements) {
    constexpr auto outOfMemory = "There is not enough memory for this plate";
    return guardExport(
        [&] {
            if (!solverAnalysis) {
                const bool none = reasonOfNone == Status::NONE;
                return answer(reasonOfNone,
                              none ? "No analysis: call _InitVoxamAnalysis first" : outOfMemory,
                              messageLength, messageBuffer);
            }
            const auto [status, text] = solverAnalysis->solve(
                moduli, {compliances, displacements, energies, stresses, looseElements});
            return answer(status, text, messageLength, messageBuffer);
        },
        [&](const char*) {
            return answer(Status::OUT_OF_MEMORY, outOfMemory, messageLength, messageBuffer);
        });
}

void _DestroyVoxamAnalysis() {
    guardExport([] {
        solverAnalysis.reset();
        reasonOfNone = Status::NONE;
    });
}
