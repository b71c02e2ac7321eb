// Numbering of the plate's nodes, elements and degrees of freedom, shared by all solvers: column by
// column, two degrees of freedom per node, x before y.
#pragma once

#include <array>
#include <cstddef>

inline constexpr size_t ELEMENT_DOFS = 8;
inline constexpr size_t ELEMENT_MATRIX_SIZE = ELEMENT_DOFS * ELEMENT_DOFS;

/// Entries of the upper triangle of one element matrix, diagonal included.
inline constexpr unsigned ELEMENT_UPPER_ENTRIES = 36;

using ElementDofs = std::array<unsigned, ELEMENT_DOFS>;

/// Global degrees of freedom of element (x, y) on a grid with `nodesY` nodes per column, in the
/// order of the element matrix: nodes (x, y), (x + 1, y), (x + 1, y + 1), (x, y + 1).
constexpr ElementDofs elementDofs(unsigned x, unsigned y, unsigned nodesY) {
    const unsigned p = 2 * (x * nodesY + y);
    const unsigned q = 2 * ((x + 1) * nodesY + y);
    return {p, p + 1, q, q + 1, q + 2, q + 3, p + 2, p + 3};
}

/// The formula that finds the coarse cell of a fine cell, both numbered column by column; -1 when a
/// divisor is 0. `fineScale` is subdivision * meshFactor, `height` the coarse cells per column.
///
/// The column divisor deliberately carries the mesh refinement instead of a second subdivision, so
/// the mapping is exact only when both refinements are equal; with a smaller mesh refinement the
/// result runs past the coarse grid, and whoever uses it must take such a cell as no cell.
inline int coarseCellOfFineCell(unsigned fineCell, unsigned fineScale, unsigned subdivision,
                                unsigned height) {
    if (fineScale * height == 0 || subdivision == 0) return -1;
    return static_cast<int>(fineCell / (fineScale * height) * height +
                            fineCell / subdivision % height);
}
