#pragma once

#include <vector>

/// Finds loose material on a plate of nelx x nely elements: material that is not joined to a
/// support, or that can turn about corners. Elements that share an edge move as one body; elements
/// that share only a corner are pinned there.
///
/// solid   one flag per element, in element order; not 0 where there is material
/// held    one flag per degree of freedom; not 0 where a support holds it
///
/// Returns 1 for each element of loose material and 0 for all others. The stiffness matrix of the
/// remaining material is positive definite for any moduli. A strut that can turn about its end is
/// loose. Material held only by such a strut is loose, too. The time grows with the number of
/// elements and of pinned bodies. The search gives up at some ten thousand bodies without an
/// obvious answer: they count as held. Throws std::bad_alloc.
std::vector<unsigned char> findLooseElements(unsigned nelx, unsigned nely,
                                             std::vector<unsigned char> solid,
                                             const std::vector<unsigned char>& held);
