#pragma once

#include <vector>

/// Times four ways of assembling the stiffness matrix of nelx x nely elements, each for every
/// number of iterations in the list, and prints one table on standard output: a line per strategy,
/// a cell per number with the total and, in parentheses, the time of the pattern's build, in
/// milliseconds.
void profileNumberOfIterations(int nelx, int nely, const std::vector<int>& iterationCounts);
