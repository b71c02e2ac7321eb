#include <gtest/gtest.h>

#include "StrainEnergies.h"
#include "support/matrices.h"

namespace {

using kmat::DenseMatrix;
using test::Matrix;

// Heights below, at and above the lanes of a vector.
class StrainEnergiesTest : public testing::TestWithParam<unsigned> {};

INSTANTIATE_TEST_SUITE_P(Heights, StrainEnergiesTest, testing::Values(1, 7, 8, 9, 17));

TEST_P(StrainEnergiesTest, AreTheQuadraticFormsOfEveryBlock) {
    constexpr unsigned n = 2;
    const unsigned nely = GetParam();
    const Equilibrium plate(3, nely, n, 1);
    StrainEnergies energies(nely, n * n);
    test::Random random;
    const Matrix u(plate.ndof, 1, random);
    for (const unsigned ix : {0U, 1U, 2U}) {
        energies.compute(plate, ix, test::dense(u));
        for (unsigned iy = 0; iy < nely; ++iy) {
            Matrix ue(8, 1);
            const auto dofs = test::dofsOfElement(ix, iy, nely);
            for (unsigned k = 0; k < 8; ++k) ue(k, 0) = u(dofs[k], 0);
            for (unsigned m = 0; m < n * n; ++m) {
                const Matrix KE = test::subElementMatrix(n, m % n, m / n);
                const double energy = product(transposed(ue), product(KE, ue))(0, 0);
                EXPECT_NEAR(energies.get(iy, m), energy, 1e-14) << ix << " " << iy << " " << m;
            }
        }
    }
}

TEST(StrainEnergiesOfAMotionTest, AreRoundOffAndNeverNegative) {
    const Equilibrium plate(1, 40, 1, 1);
    StrainEnergies energies(40, 1);
    energies.compute(plate, 0, DenseMatrix(plate.ndof, 1, 1e6 / 3));
    for (unsigned iy = 0; iy < 40; ++iy) {
        EXPECT_GE(energies.get(iy, 0), 0.0);
        EXPECT_LT(energies.get(iy, 0), 0.01);
    }
    // Each row moves for itself: some of their sums round to less than 0.
    DenseMatrix u(plate.ndof, 1);
    for (unsigned i = 0; i < plate.ndof; ++i) u(i, 0) = i % 2 ? 1e6 * (i % 4) / 7 : 1e6 / 3;
    for (unsigned row = 0; row <= 40; ++row) {
        for (const unsigned node : {row, row + 41}) u(2 * node + 1, 0) = 1e6 / 7;
    }
    energies.compute(plate, 0, u);
    for (unsigned iy = 0; iy < 40; ++iy) EXPECT_GE(energies.get(iy, 0), 0.0);
}

}  // namespace
