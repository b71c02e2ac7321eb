#pragma once

#include <vector>

#include "dense_matrix.h"
#include "sparse_matrix.h"

/// A way of assembling the stiffness matrix again and again.
struct AssemblyStrategy {
    const char* label;
    bool reuse;     ///< later assemblies add to the first one's matrix, instead of making a new one
    bool parallel;  ///< those that reuse it take even columns and then odd ones on all cores
    bool
        parallelBuild;  ///< the first one lists its triplets by chunks of columns on half the cores
};

/// The strategies of the performance test, in the order of its lines.
extern const AssemblyStrategy ASSEMBLY_STRATEGIES[4];

/// The densities that the performance test assembles: half full, 2 x 2 cells in each element.
kmat::DenseMatrix performanceDensities(int nelx, int nely);

/// Assembles the stiffness of these densities that often, in single precision, and returns the
/// matrix of the last. Reused, it holds the sum of all assemblies, in parallel without the last
/// column of an odd number. Adds what the pattern's builds take to `buildTime`, in milliseconds.
kmat::SparseMatrix assembleRepeatedly(int nelx, int nely, const kmat::DenseMatrix& densities,
                                      const AssemblyStrategy& strategy, int iterations,
                                      double& buildTime);

/// Times four ways of assembling the stiffness matrix of nelx x nely elements, each for every
/// number of iterations in the list, and prints one table on standard output: a line per strategy,
/// a cell per number with the total and, in parentheses, the time of the pattern's build, in
/// milliseconds.
void profileNumberOfIterations(int nelx, int nely, const std::vector<int>& iterationCounts);
