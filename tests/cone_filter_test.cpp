#include <gtest/gtest.h>

#include <climits>
#include <new>

#include "ConeFilter.h"
#include "support/matrices.h"

namespace {

using kmat::DenseMatrix;

TEST(ConeFilterTest, HasTheBitsOfAProductWithTheMatrixOfWeights) {
    const struct {
        unsigned nx, ny;
        double radius;
    } cones[] = {{9, 10, 3.0}, {8, 6, 1.2F}, {7, 5, 1.0},  {6, 7, 1.5},  {5, 6, 2.3},
                 {1, 8, 3.0},  {8, 1, 3.0},  {4, 3, 20.0}, {3, 3, 0.75}, {1, 1, 2.0}};
    test::Random random;
    for (const auto& [nx, ny, radius] : cones) {
        SCOPED_TRACE(testing::Message() << nx << " x " << ny << ", radius " << radius);
        const test::Matrix weights = test::coneWeights(nx, ny, radius);
        const test::Matrix sums = test::rowSums(weights);
        const test::Matrix field(nx * ny, 1, random);
        test::Matrix filtered = product(weights, field);
        test::Matrix share = field;
        for (unsigned i = 0; i < nx * ny; ++i) {
            filtered(i, 0) /= sums(i, 0);
            share(i, 0) /= sums(i, 0);
        }
        const ConeFilter filter(nx, ny, radius);
        DenseMatrix result(nx * ny, 1);
        DenseMatrix work(nx * ny, 1);
        filter.apply(test::dense(field), result);
        EXPECT_EQ(test::Matrix(result), filtered);
        filter.applyTransposed(test::dense(field), work, result);
        EXPECT_EQ(test::Matrix(result), product(weights, share));
    }
}

TEST(ConeFilterRuleTest, MaximumRuleOfNoCellsChangesNothing) {
    ConeFilter filter(3, 1, 2.0);
    filter.applyMaximumRule(0);
    EXPECT_EQ(test::listOf(filter.getNormaliser()), (std::vector<double>{3, 4, 3}));
}

TEST(ConeFilterRuleTest, MaximumRuleKeepsTheNormaliserAboveZero) {
    ConeFilter filter(2, 1, 0.0);
    EXPECT_EQ(test::listOf(filter.getNormaliser()), (std::vector<double>{0, 0}));
    filter.applyMaximumRule(1);
    EXPECT_EQ(test::listOf(filter.getNormaliser()), (std::vector<double>{1e-8, 0}));
}

TEST(ConeFilterSizeTest, GridsWithoutCellsAreEmpty) {
    for (const auto& [nx, ny] : {std::pair{0U, 0U}, {0U, UINT_MAX}, {UINT_MAX, 0U}}) {
        const ConeFilter filter(nx, ny, 3.0);
        EXPECT_EQ(filter.getNormaliser().getRows(), 0U);
    }
    EXPECT_EQ(ConeFilter().getNormaliser().getRows(), 0U);
}

// Applying them, or counting alone, would take hours.
TEST(ConeFilterSizeTest, MoreWeightsThanAnIntCountsAreRefusedAtOnce) {
    EXPECT_THROW(ConeFilter(40000, 40000, 3.0), std::bad_alloc);
    EXPECT_THROW(ConeFilter(40000, 40000, 1e300), std::bad_alloc);
    EXPECT_THROW(ConeFilter(28 * 35, 49 * 35, 35.0), std::bad_alloc);  // of a mesh
    EXPECT_THROW(ConeFilter(INT_MAX, 1, 1.5), std::bad_alloc);
    EXPECT_THROW(ConeFilter(1, INT_MAX, 3e9), std::bad_alloc);
}

}  // namespace
