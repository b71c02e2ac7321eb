// Sizes and numbering of the plate's nodes, elements and degrees of freedom, shared by all solvers:
// column by column, two degrees of freedom per node, x before y.
#pragma once

#include <array>
#include <cstddef>

inline constexpr std::size_t ELEMENT_DOFS = 8;
inline constexpr std::size_t ELEMENT_MATRIX_SIZE = ELEMENT_DOFS * ELEMENT_DOFS;

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
/// The column divisor carries the mesh refinement instead of a second subdivision, so the mapping
/// is exact only when both refinements are equal. Hosts rely on the resulting designs. With a
/// smaller mesh refinement the result runs past the coarse grid; the caller must treat such a
/// result as "no cell".
inline int coarseCellOfFineCell(unsigned fineCell, unsigned fineScale, unsigned subdivision,
                                unsigned height) {
    if (fineScale * height == 0 || subdivision == 0) return -1;
    return static_cast<int>(fineCell / (fineScale * height) * height +
                            fineCell / subdivision % height);
}

/// The three grids of a design problem, each counted column by column:
///  - coarse, nelx x nely elements: the finite-element analysis;
///  - fine, each coarse element split into subdivision x subdivision cells: the design;
///  - mesh, each fine cell shown as meshFactor x meshFactor cells: the picture.
struct DesignGrids {
    /// Throws std::bad_alloc when a number of cells exceeds the range of int.
    DesignGrids(unsigned nelx, unsigned nely, unsigned subdivision, unsigned meshFactor);

    /// The fine cell at column a and row b of coarse element (ix, iy).
    unsigned fineElement(unsigned ix, unsigned iy, unsigned a, unsigned b) const {
        return ((subdivision * ix + a) * nely + iy) * subdivision + b;
    }
    unsigned coarseElement(unsigned ix, unsigned iy) const { return nely * ix + iy; }

    /// The coarse cell of fine cell i by coarseCellOfFineCell(); see there where it is exact.
    int getCoarseGridIndex(int i) const {
        return coarseCellOfFineCell(static_cast<unsigned>(i), subdivision * meshFactor, subdivision,
                                    nely);
    }

    unsigned nelx;
    unsigned nely;
    unsigned subdivision;
    unsigned meshFactor;
    unsigned numberOfCoarseElements;
    unsigned numberOfElements;  ///< fine cells
    unsigned numberOfMeshElements;
};
