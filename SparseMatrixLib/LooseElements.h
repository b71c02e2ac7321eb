#pragma once

#include <vector>

/// Finds the material of a plate of nelx x nely elements that its supports leave free to move:
/// because nothing joins it to what they hold, or because it turns about corners. Elements that
/// share an edge move as one body; elements that share a corner only are pinned there.
///
/// solid   one flag per element, in element order; not 0 where there is material
/// held    one flag per degree of freedom; not 0 where a support holds it
///
/// Returns 1 for each element of such material and 0 for all others. What is held is held exactly
/// when the stiffness matrix of the rest is positive definite, whatever the moduli: so a strut that
/// may turn about its end is loose, and so is what only this strut holds. The time grows with the
/// number of elements, and beyond that with the number of pinned bodies; a plate of more than some
/// ten thousand bodies whose freedom is not plain counts as held. Throws std::bad_alloc.
std::vector<unsigned char> findLooseElements(unsigned nelx, unsigned nely,
                                             std::vector<unsigned char> solid,
                                             const std::vector<unsigned char>& held);
