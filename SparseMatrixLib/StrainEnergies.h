#pragma once

#include <cstddef>
#include <vector>

#include "Equilibrium.h"

/// Strain energies u' KE u of the sub-elements of one column of coarse elements, for unit modulus.
/// They are computed side by side in lanes of the processor's vectors: the sum of each is formed in
/// its own order and has the bits of a scalar loop.
class StrainEnergies {
public:
    /// Work space for columns of nely elements of `blocks` sub-elements each.
    StrainEnergies(unsigned nely, unsigned blocks);

    /// The energies of column ix for the displacements u. Round-off may make an energy negative; it
    /// then counts as 0.
    void compute(const Equilibrium& plate, unsigned ix, const kmat::DenseMatrix& u);

    /// The energy of sub-element `block` of the element in row iy of the last computed column.
    double get(unsigned iy, unsigned block) const { return energies[block * stride + iy]; }

private:
    std::size_t stride;  ///< nely, rounded up to whole lanes
    std::size_t blocks;
    std::vector<double> displacements;  ///< by local degree of freedom, element by element
    std::vector<double> energies;       ///< by sub-element, element by element
};
