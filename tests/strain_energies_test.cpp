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
    // Sums of some motions round to less than 0.
    test::Random random;
    for (int motion = 0; motion < 20; ++motion) {
        const double x = random.number(-1e6, 1e6);
        const double y = random.number(-1e6, 1e6);
        DenseMatrix u(plate.ndof, 1, x);
        for (unsigned dof = 1; dof < plate.ndof; dof += 2) u(dof, 0) = y;
        energies.compute(plate, 0, u);
        EXPECT_GE(energies.get(0, 0), 0.0) << x << " " << y;
    }
}

}  // namespace
