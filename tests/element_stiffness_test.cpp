#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <new>

#include "ElementStiffnessMatrix.h"
#include "support/textbook.h"

namespace {

using test::Matrix;

// The blocks, checked for what every element matrix obeys: symmetry, and no force from the two
// translations and the rotation.
std::vector<Matrix> elementBlocks(unsigned n) {
    const std::unique_ptr<double[]> values(
        ElementStiffnessMatrix::createElementStiffnessMatrix(static_cast<int>(n)));
    Matrix rigid(8, 3);
    for (unsigned k = 0; k < 4; ++k) {
        rigid(2 * k, 0) = rigid(2 * k + 1, 1) = 1.0;
        rigid(2 * k, 2) = k < 2 ? 1.0 : -1.0;
        rigid(2 * k + 1, 2) = k == 1 || k == 2 ? 1.0 : -1.0;
    }
    std::vector<Matrix> blocks;
    for (std::size_t b = 0; b < std::size_t{n} * n; ++b) {
        Matrix& block = blocks.emplace_back(8, 8);
        std::copy_n(values.get() + 64 * b, 64, block.values.begin());
        EXPECT_LT(distance(block, transposed(block)), 1e-15);
        EXPECT_LT(distance(product(block, rigid), Matrix(8, 3)), 1e-15);
    }
    return blocks;
}

TEST(ElementStiffnessTest, SingleElementIsTheExactIntegral) {
    const Matrix block = elementBlocks(1)[0];
    EXPECT_LT(distance(block, test::exactElementMatrix()), 1e-15);
    EXPECT_NEAR(block(0, 0), 0.4945054962, 1e-10);
    EXPECT_NEAR(block(0, 1), 0.1785714316, 1e-10);
    EXPECT_NEAR(block(0, 7), 0.0137362589, 1e-10);
}

TEST(ElementStiffnessTest, SubSquaresAreTheMidpointRuleRowByRow) {
    for (const unsigned n : {2U, 3U, 5U}) {
        const auto blocks = elementBlocks(n);
        for (unsigned b = 0; b < n * n; ++b) {
            EXPECT_LT(distance(blocks[b], test::subElementMatrix(n, b % n, b / n)), 1e-15) << b;
        }
    }
}

TEST(ElementStiffnessTest, TooManySubSquaresAreRefused) {
    for (const int n : {5793, 65536, INT_MAX, INT_MIN}) {  // 64 * 5793^2 is above 2^31
        EXPECT_THROW(ElementStiffnessMatrix::createElementStiffnessMatrix(n), std::bad_alloc);
    }
}

}  // namespace
