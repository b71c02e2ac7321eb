#include "PerformanceTest.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <numeric>

#include "ElementStiffnessMatrix.h"
#include "GridNumbering.h"
#include "HostOutput.h"
#include "ParallelFor.h"
#include "Timer.h"
#include "dense_matrix.h"
#include "sparse_matrix.h"

using kmat::DenseMatrix;
using kmat::SparseMatrix;

namespace {

constexpr int SUBDIVISION = 2;
constexpr int ENTRIES_PER_ELEMENT = SUBDIVISION * SUBDIVISION * ELEMENT_UPPER_ENTRIES;

constexpr double DENSITY = 0.5;
constexpr float E0 = 1.0F;
constexpr float EMIN = 0.01F;
constexpr float PENALTY = 3.0F;

// One assembly of the plate's stiffness matrix, by columns of elements.
struct Assembly {
    int nelx;
    int nely;
    const DenseMatrix& densities;
    const double* blocks;  ///< the matrices of the sub-elements

    SparseMatrix emptyMatrix(int columns) const {
        const auto ndof = static_cast<unsigned>(2 * (nelx + 1) * (nely + 1));
        return {ndof, ndof, true, columns * nely * ENTRIES_PER_ELEMENT};
    }

    void addColumn(int x, SparseMatrix& K, bool singlePrecisionModulus = false) const {
        for (int y = 0; y < nely; ++y) {
            const ElementDofs dof = elementDofs(static_cast<unsigned>(x), static_cast<unsigned>(y),
                                                static_cast<unsigned>(nely + 1));
            const double* block = blocks;
            for (int s = 0; s < SUBDIVISION; ++s) {
                for (int t = 0; t < SUBDIVISION; ++t, block += ELEMENT_MATRIX_SIZE) {
                    const int e = ((SUBDIVISION * x + t) * nely + y) * SUBDIVISION + s;
                    const double density = densities(static_cast<unsigned>(e), 0);
                    double modulus =
                        EMIN + (double{E0} - EMIN) * std::pow(density, double{PENALTY});
                    if (singlePrecisionModulus) modulus = static_cast<float>(modulus);
                    addBlock(dof, block, modulus, K);
                }
            }
        }
    }

    static void addBlock(const ElementDofs& dof, const double* block, double modulus,
                         SparseMatrix& K) {
        for (std::size_t a = 0; a < ELEMENT_DOFS; ++a) {
            for (std::size_t c = 0; c < ELEMENT_DOFS; ++c) {
                if (dof[a] > dof[c]) continue;
                K.getValue(dof[a], dof[c]) +=
                    static_cast<float>(block[ELEMENT_DOFS * a + c] * modulus);
            }
        }
    }

    void addAllColumns(SparseMatrix& K, bool singlePrecisionModulus) const {
        // Without memory each entry would ask for it again.
        if (K.getMatrixState() != kmat::BUILT && !K.allocateTriplets()) throw std::bad_alloc();
        for (int x = 0; x < nelx; ++x) addColumn(x, K, singlePrecisionModulus);
    }

    // Even columns share no node with each other, nor do odd ones. The last column of an odd number
    // is left out, as a pass has nelx / 2 tasks.
    void addAllColumnsInParallel(SparseMatrix& K) const {
        for (int first : {0, 1}) {
            parallelFor(static_cast<std::size_t>(nelx / 2),
                        [&](std::size_t k) { addColumn(2 * static_cast<int>(k) + first, K); });
        }
    }

    // Each chunk of columns fills triplets of its own, which are joined afterwards.
    void addTripletsInParallel(SparseMatrix& K) const {
        const auto processors = static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
        const int chunks = std::max(1, processors / 2);
        const int columnsPerChunk = (nelx - 1) / chunks + 1;
        std::vector<SparseMatrix> further;
        further.reserve(static_cast<std::size_t>(chunks));
        for (int c = 1; c < chunks; ++c) further.push_back(emptyMatrix(columnsPerChunk));
        // The first entry allocates through the shared workspace: on this thread, not in a task.
        bool allocated = K.allocateTriplets();
        for (SparseMatrix& chunk : further) allocated = chunk.allocateTriplets() && allocated;
        if (!allocated) throw std::bad_alloc();
        parallelFor(static_cast<std::size_t>(chunks), [&](std::size_t c) {
            SparseMatrix& target = c == 0 ? K : further[c - 1];
            const int begin = static_cast<int>(c) * columnsPerChunk;
            const int end = std::min(begin + columnsPerChunk, nelx);
            for (int x = begin; x < end; ++x) addColumn(x, target);
        });
        for (const SparseMatrix& chunk : further) {
            if (chunk.getMatrixState() == kmat::INIT) K.append(chunk);
        }
    }
};

// The blocks are made anew in every iteration and never released, because an allocator that hands
// out the same block again would flatter the later iterations. Kept reachable, so that leak
// checkers stay silent.
const double* keptForever(const double* blocks) {
    static auto& kept = *new std::vector<const double*>;
    kept.push_back(blocks);
    return blocks;
}

void buildTimed(SparseMatrix& K, double& buildTime) {
    Timer timer;
    timer.start();
    K.build();
    timer.stop();
    if (K.getMatrixState() != kmat::BUILT) throw std::bad_alloc();
    buildTime += timer.getElapsedTimeInMilliSec();
}

}  // namespace

const AssemblyStrategy ASSEMBLY_STRATEGIES[4] = {
    {"Allways create triplet ", false, false, false},
    {"Reuse sparse (sequential)", true, false, false},
    {"Reuse sparse (parallel) ", true, true, false},
    {"Reuse sparse (parallel build) ", true, true, true},
};

DenseMatrix runTest(int nelx, int nely, const AssemblyStrategy& strategy, int iterations,
                    double& buildTime, SparseMatrix* stiffness) {
    DenseMatrix densities(static_cast<unsigned>(nelx * nely * SUBDIVISION * SUBDIVISION), 1,
                          DENSITY);
    if (!densities.begin()) throw std::bad_alloc();
    Assembly assembly{nelx, nely, densities, nullptr};
    SparseMatrix K = assembly.emptyMatrix(nelx);
    for (int it = 0; it < iterations; ++it) {
        assembly.blocks =
            keptForever(ElementStiffnessMatrix::createElementStiffnessMatrix(SUBDIVISION));
        if (it >= 1 && strategy.reuse) {
            if (strategy.parallel)
                assembly.addAllColumnsInParallel(K);
            else
                assembly.addAllColumns(K, false);
            continue;
        }
        if (it >= 1) K = assembly.emptyMatrix(nelx);
        if (strategy.parallelBuild)
            assembly.addTripletsInParallel(K);
        else
            assembly.addAllColumns(K, true);
        buildTimed(K, buildTime);
    }
    if (stiffness) *stiffness = std::move(K);
    return densities;
}

void profileNumberOfIterations(int nelx, int nely, const std::vector<int>& iterationCounts) {
    HostLine() << "Profile number of iterations " << nelx << "x" << nely;
    {
        HostLine heading;
        heading << "Iterations:";
        for (int count : iterationCounts) heading << "\t" << count;
    }
    for (const AssemblyStrategy& strategy : ASSEMBLY_STRATEGIES) {
        HostLine row;
        row << strategy.label;
        std::vector<double> checksums;  // keeps the runs from being optimised away
        for (int count : iterationCounts) {
            Timer timer;
            timer.start();
            double buildTime = 0.0;
            const DenseMatrix densities = runTest(nelx, nely, strategy, count, buildTime);
            timer.stop();
            row << "\t" << timer.getElapsedTimeInMilliSec() << " (" << buildTime << ")";
            checksums.push_back(std::accumulate(densities.begin(), densities.end(), 0.0));
        }
    }
}
