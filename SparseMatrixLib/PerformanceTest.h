#pragma once

#include <vector>

#include "dense_matrix.h"
#include "sparse_matrix.h"

/// A way of assembling the stiffness matrix again and again.
struct AssemblyStrategy {
    const char* label;
    bool reuse;     ///< later assemblies add to the first one's matrix; else each makes its own
    bool parallel;  ///< the later ones take even columns and then odd ones, on all cores
    bool parallelBuild;  ///< the first one lists its triplets by chunks of columns, on half of them
};

/// The strategies of the performance test, in the order of its lines.
extern const AssemblyStrategy ASSEMBLY_STRATEGIES[4];

/// Assembles nelx x nely elements of 2 x 2 half full cells that many times by one strategy, in
/// single precision, and returns their densities. Adds the time of the pattern's builds to
/// `buildTime`, in milliseconds. `stiffness`, if not null, receives the matrix of the last
/// assembly, or the sum of all assemblies if the matrix is reused. A parallel assembly leaves out
/// the last column if the number of columns is odd.
kmat::DenseMatrix runTest(int nelx, int nely, const AssemblyStrategy& strategy, int iterations,
                          double& buildTime, kmat::SparseMatrix* stiffness = nullptr);

/// Times four ways of assembling the stiffness matrix of nelx x nely elements, each for every
/// number of iterations in the list, and prints one table on standard output: a line per strategy,
/// a cell per number with the total and, in parentheses, the time of the pattern's build, in
/// milliseconds.
void profileNumberOfIterations(int nelx, int nely, const std::vector<int>& iterationCounts);
