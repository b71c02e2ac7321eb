#include <gtest/gtest.h>

#include "StrainEnergies.h"
#include "support/matrices.h"

namespace {

using kmat::DenseMatrix;

// Those of other displacements are compared in whole runs.
TEST(StrainEnergiesTest, OfAMotionAreRoundOffAndNeverNegative) {
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
