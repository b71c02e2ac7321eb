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

}  // namespace
