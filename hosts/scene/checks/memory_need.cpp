#include "checks/memory_need.h"

#include <algorithm>
#include <cmath>

#include "checks/assessment.h"

namespace voxam::inline checks {

namespace {

// Measured; docs/hosting.md explains the estimate, which all hosts of the library share.
constexpr double BYTES_OF_DESIGN_CELL = 120;
constexpr double BYTES_OF_PICTURE_CELL = 40;
constexpr double BYTES_OF_NODE = 1000;
constexpr double BYTES_OF_FACTOR = 110;
constexpr double BYTES_OF_LOAD_CASE = 32;  // forces and displacements of a node
// The same of an analysis in double precision, with the energies of its elements; and what it takes
// to keep displacements and stresses and to write them as text.
constexpr double BYTES_OF_ANALYSED_CASE = 90;
constexpr double BYTES_OF_STATE = 100;
constexpr double SHARE_OF_SCORE = 0.9;  // of the equations of an optimisation of this size
constexpr double BYTES_OF_PROGRAM = 15e6;

double nodesOf(const Scene& scene, int refinement) {
    return (1.0 * refinement * scene.width + 1) * (1.0 * refinement * scene.height + 1);
}

double bytesOfEquations(double nodes, int loadCases) {
    return nodes *
           (BYTES_OF_NODE + BYTES_OF_FACTOR * std::log2(nodes) + BYTES_OF_LOAD_CASE * loadCases);
}

double bytesOfScore(double nodes, int loadCases, bool keepsStates) {
    const double withoutCases = SHARE_OF_SCORE * bytesOfEquations(nodes, 0);
    const double ofCase = BYTES_OF_ANALYSED_CASE + (keepsStates ? BYTES_OF_STATE : 0);
    return withoutCases + nodes * ofCase * loadCases;
}

}  // namespace

MemoryNeed memoryNeed(const Scene& scene, bool keepsStates) {
    const double elements = 1.0 * scene.width * scene.height;
    const double designCells = elements * scene.subdivision * scene.subdivision;
    const double pictureCells = designCells * scene.meshFactor * scene.meshFactor;
    const double design = designCells * BYTES_OF_DESIGN_CELL;
    const double picture = pictureCells * BYTES_OF_PICTURE_CELL;
    const double equations = bytesOfEquations(nodesOf(scene, 1), scene.loadCaseCount());
    const double score =
        bytesOfScore(nodesOf(scene, drawnRefinement(scene)), scene.loadCaseCount(), keepsStates);
    MemoryNeed need{BYTES_OF_PROGRAM + design + picture + equations + score, "grid",
                    "lower its width and height"};
    if (picture > std::max(design, equations) && scene.meshFactor > 1) {
        need.key = "meshFactor";
        need.advice = "lower meshFactor or subdivision";
    } else if (design + picture > equations && scene.subdivision > 1) {
        need.key = "subdivision";
        need.advice = "lower it";
    }
    return need;
}

MemoryNeed memoryNeedOfScore(const Field& design, const Scene& scene, bool keepsStates) {
    const double nodes = (design.width + 1.0) * (design.height + 1.0);
    return {BYTES_OF_PROGRAM + bytesOfScore(nodes, scene.loadCaseCount(), keepsStates), "design",
            "score a coarser design"};
}

}  // namespace voxam::inline checks
