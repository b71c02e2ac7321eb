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
    std::array<std::pair<std::size_t, std::size_t>, ELEMENT_UPPER_ENTRIES> pairs{};
    const ElementDofs dof = elementDofs(0, 0, 2);
    std::size_t count = 0;
    for (std::size_t k = 0; k < ELEMENT_DOFS; ++k) {
        for (std::size_t l = 0; l < ELEMENT_DOFS; ++l) {
            if (dof[k] <= dof[l]) pairs[count++] = {k, l};
        }
    }
    return pairs;
}();

/// Where a built stiffness matrix holds the upper triangle of one element, as indices into its
/// values in the order of ELEMENT_UPPER_PAIRS.
using ElementEntries = std::array<int, ELEMENT_UPPER_ENTRIES>;

/// A built symmetric matrix with the pattern of a plate of nelx x nely elements, upper triangle,
/// all values 0. A plate without elements has no entries. Throws std::bad_alloc.
///
/// Adding contributions to the built values one after the other gives the same bits as listing them
/// as triplets in the same order and compressing the list.
kmat::SparseMatrix stiffnessPattern(unsigned nelx, unsigned nely);

/// The entries of every element in element order, of a matrix with that pattern. Remembering them
/// spares each assembly a search for every contribution.
std::vector<ElementEntries> findElementEntries(const kmat::SparseMatrix& pattern, unsigned nelx,
                                               unsigned nely);
