#include <gtest/gtest.h>

#include "ElementDeformation.h"
#include "support/exact_plate.h"
#include "support/textbook.h"

namespace {

TEST(ElementDeformationTest, GivesTheTextbooksMatrixInWholeNumbers) {
    test::Matrix matrix(8, 8);
    for (unsigned i = 0; i < 64; ++i) {
        matrix(i / 8, i % 8) = INTEGER_ELEMENT_MATRIX[i] / ELEMENT_STIFFNESS_DIVISOR;
        EXPECT_EQ(INTEGER_ELEMENT_MATRIX[i], test::wholeStiffness(i / 8, i % 8));
    }
    EXPECT_LT(test::distance(matrix, test::exactElementMatrix()), 1e-7)
        << "up to the single precision of Poisson's ratio there";
}

TEST(ElementDeformationTest, KnowsNoRigidMotion) {
    // A translation and a rotation about a point far away: nodes (0, 0), (1, 0), (1, 1), (0, 1).
    for (const double far : {0.0, 1e12}) {
        const ElementDeformation d =
            deformationOf({7 - far, far, 7 - far, far + 1, 6 - far, far + 1, 6 - far, far});
        for (const double force : nodalForces(d)) EXPECT_EQ(force, 0.0);
        EXPECT_EQ(deformationEnergy(d), 0.0);
    }
}

TEST(ElementDeformationTest, HasTheEnergyOfItsForces) {
    test::Random random;
    ElementVector u;
    for (double& value : u) value = random.number();
    const ElementVector forces = nodalForces(deformationOf(u));
    double work = 0.0;
    for (size_t i = 0; i < u.size(); ++i) work += u[i] * forces[i];
    EXPECT_NEAR(deformationEnergy(deformationOf(u)), work, 1e-12 * work);
}

}  // namespace
