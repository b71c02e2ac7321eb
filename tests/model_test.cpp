#include <gtest/gtest.h>

#include <memory>
#include <tuple>

#include "ElementStiffnessMatrix.h"
#include "TopologyOptimizationComponentData.h"
#include "test_support.h"

namespace {

using test::Matrix;
using Record = TopologyOptimizationComponentData;

TEST(ComponentDataTest, ReadsRoundedIndicesAndExactForcesAndWritesThemBack) {
    const float data[] = {0.5F, 1.5F, 0.1F, -0.0F, -0.5F, 2.4F, -2.5F, 0.25F, -1.0F, 2.5F};
    const auto records = Record::load(data, 2);
    ASSERT_EQ(records.size(), 2U);
    const auto& [x, y, fx, fy, loadCase] = records[0];
    EXPECT_EQ(std::tuple(x, y, fx, loadCase), std::tuple(1, 2, 0.1F, -1));
    EXPECT_TRUE(std::signbit(fy));
    std::vector<float> out(6);
    EXPECT_EQ(records[1].toFloatArray(out.data()), out.data());
    EXPECT_EQ(out, (std::vector<float>{2.0F, -3.0F, 0.25F, -1.0F, 3.0F, 0.0F}));
    const std::unique_ptr<float[]> fresh(records[1].toFloatArray(nullptr));
    EXPECT_TRUE(std::equal(fresh.get(), fresh.get() + 5, out.begin()));
    EXPECT_TRUE(Record::load(data, 0).empty());
    EXPECT_TRUE(Record::load(nullptr, -3).empty());
    EXPECT_TRUE(Record::load(nullptr, 3).empty());
}

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
    for (size_t b = 0; b < size_t{n} * n; ++b) {
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

TEST(ElementStiffnessTest, SubSquaresAreTheMidpointRule) {
    for (const unsigned n : {2U, 3U, 5U}) {
        const auto blocks = elementBlocks(n);
        const double h = 2.0F / static_cast<float>(n);
        for (unsigned b = 0; b < n * n; ++b) {
            const Matrix M = test::stiffnessAt(h * (b % n) + h / 2 - 1, h * (b / n) + h / 2 - 1);
            EXPECT_LT(distance(blocks[b], combination(4.0 / (n * n), M, 0, M)), 1e-15);
        }
    }
    const auto blocks = elementBlocks(2);
    const double expected[] = {0.2086195062, 0.1605425836, 0.0712568678, 0.0231799451};
    for (size_t b = 0; b < 4; ++b) EXPECT_NEAR(blocks[b](0, 0), expected[b], 1e-10);
}

}  // namespace
