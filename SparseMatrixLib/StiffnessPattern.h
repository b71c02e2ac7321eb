// The sparsity pattern of a plate's stiffness matrix, and where each element's entries lie in it.
#pragma once

#include <array>
#include <utility>
#include <vector>

#include "GridNumbering.h"
#include "sparse_matrix.h"

/// Pairs (row, column) of local degrees of freedom whose global entry lies in the upper triangle,
/// row by row. They are the same for every element, because the four nodes of every element are
/// numbered in the same order.
inline constexpr auto ELEMENT_UPPER_PAIRS = [] {
    std::array<std::pair<size_t, size_t>, ELEMENT_UPPER_ENTRIES> pairs{};
    const ElementDofs dof = elementDofs(0, 0, 2);
    size_t count = 0;
    for (size_t k = 0; k < ELEMENT_DOFS; ++k) {
        for (size_t l = 0; l < ELEMENT_DOFS; ++l) {
            if (dof[k] <= dof[l]) pairs[count++] = {k, l};
        }
    }
    return pairs;
}();

/// Where a built stiffness matrix holds the upper triangle of one element, as indices into its
/// values in the order of ELEMENT_UPPER_PAIRS.
using ElementEntries = std::array<int, ELEMENT_UPPER_ENTRIES>;

/// Replaces K by a built symmetric matrix of its size with the pattern of a plate of nelx x nely
/// elements and all values 0. Returns the entries of every element in element order. Remembering
/// them spares each assembly a search for every contribution. Throws std::bad_alloc.
///
/// Adding contributions to the built values one after the other gives the same bits as summing them
/// as triplets in the same order.
std::vector<ElementEntries> buildStiffnessPattern(kmat::SparseMatrix& K, unsigned nelx,
                                                  unsigned nely);
