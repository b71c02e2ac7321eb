// What both solvers need to set up a problem.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "TopologyOptimizationComponentData.h"
#include "dense_matrix.h"

/// Stiffness on the diagonal of a supported degree of freedom (penalty method): the optimiser puts
/// it in place of the assembled one, the game adds it.
inline constexpr double SUPPORT_STIFFNESS = 1.0e8;

/// The product of sizes. Throws std::bad_alloc when it exceeds the range of int, the index type of
/// the linear algebra: no machine could hold such a problem.
unsigned checkedProduct(std::initializer_list<uint64_t> sizes);

/// A capacity clamped to the range of int: it is only a first guess, and lists grow as needed.
int clampedCapacity(std::initializer_list<uint64_t> sizes);

/// A column of NaN: reading an entry before it is written shows. Throws std::bad_alloc.
kmat::DenseMatrix undefinedVector(unsigned rows);

/// Whether the record's node lies on a grid of nodesX x nodesY nodes.
bool isOnGrid(const TopologyOptimizationComponentData& record, unsigned nodesX, unsigned nodesY);

/// The node of a record that lies on the grid.
inline unsigned nodeOf(const TopologyOptimizationComponentData& record, unsigned nodesY) {
    return static_cast<unsigned>(record.x) * nodesY + static_cast<unsigned>(record.y);
}
