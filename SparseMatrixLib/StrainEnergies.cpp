#include "StrainEnergies.h"

#include <algorithm>
#include <array>

#include "GridNumbering.h"

namespace {

constexpr std::size_t LANES = 8;

constexpr std::size_t paddedToLanes(std::size_t count) {
    return (count + LANES - 1) / LANES * LANES;
}

// The energies of LANES elements. Their displacements lie side by side, those of the next local
// degree of freedom `stride` further on.
void energiesOfLanes(const double* matrix, const double* displacements, std::size_t stride,
                     double* energies) {
    std::array<double, LANES> ce{};
    for (std::size_t k = 0; k < ELEMENT_DOFS; ++k) {
        for (std::size_t l = 0; l < ELEMENT_DOFS; ++l) {
            const double stiffness = matrix[ELEMENT_DOFS * k + l];
            const double* uk = displacements + k * stride;
            const double* ul = displacements + l * stride;
            for (std::size_t i = 0; i < LANES; ++i) ce[i] += stiffness * uk[i] * ul[i];
        }
    }
    for (std::size_t i = 0; i < LANES; ++i) energies[i] = std::max(0.0, ce[i]);
}

}  // namespace

StrainEnergies::StrainEnergies(unsigned nely, unsigned blocks)
    : stride(paddedToLanes(nely)),
      blocks(blocks),
      displacements(ELEMENT_DOFS * stride),
      energies(blocks * stride) {}

void StrainEnergies::compute(const Equilibrium& plate, unsigned ix, const kmat::DenseMatrix& u) {
    for (unsigned iy = 0; iy < plate.nely; ++iy) {
        const ElementDofs dof = elementDofs(ix, iy, plate.nodesY);
        for (std::size_t k = 0; k < ELEMENT_DOFS; ++k)
            displacements[k * stride + iy] = u(dof[k], 0);
    }
    for (std::size_t m = 0; m < blocks; ++m) {
        for (std::size_t iy = 0; iy < stride; iy += LANES) {
            energiesOfLanes(plate.KE.get() + m * ELEMENT_MATRIX_SIZE, displacements.data() + iy,
                            stride, energies.data() + m * stride + iy);
        }
    }
}
