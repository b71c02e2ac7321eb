#include <gtest/gtest.h>

#include <climits>
#include <new>

#include "ConeFilter.h"
#include "support/matrices.h"

namespace {

using kmat::DenseMatrix;
using test::distance;
using test::Matrix;

struct Cone {
    unsigned nx, ny;
    double radius;
};

void PrintTo(const Cone& c, std::ostream* out) {
    *out << c.nx << " x " << c.ny << ", radius " << c.radius;
}

// Against the weights of all pairs of cells.
class ConeFilterTest : public testing::TestWithParam<Cone> {
protected:
    const unsigned cells = GetParam().nx * GetParam().ny;
    const Matrix weights = test::coneWeights(GetParam().nx, GetParam().ny, GetParam().radius);
    const Matrix sums = test::rowSums(weights);
    ConeFilter filter{GetParam().nx, GetParam().ny, GetParam().radius};
    test::Random random;
    const Matrix field{cells, 1, random};
};

INSTANTIATE_TEST_SUITE_P(Cones, ConeFilterTest,
                         testing::Values(Cone{9, 10, 3.0}, Cone{8, 6, 1.2F}, Cone{7, 5, 1.0},
                                         Cone{6, 7, 1.5}, Cone{5, 6, 2.3}, Cone{1, 8, 3.0},
                                         Cone{8, 1, 3.0}, Cone{4, 3, 20.0}, Cone{3, 3, 0.75},
                                         Cone{1, 1, 2.0}));

TEST_P(ConeFilterTest, StoresTheUpperTriangleOfTheWeightsThatAreNotZero) {
    test::Entries expected;
    for (unsigned c = 0; c < cells; ++c) {
        for (unsigned r = 0; r <= c; ++r) {
            if (weights(r, c) > 0.0) expected.push_back({r, c, weights(r, c)});
        }
    }
    EXPECT_EQ(test::stored(filter.weights), expected);
}

TEST_P(ConeFilterTest, AppliesToAFieldAndTransposed) {
    Matrix filtered = product(weights, field);
    Matrix share = field;
    for (unsigned i = 0; i < cells; ++i) {
        filtered(i, 0) /= sums(i, 0);
        share(i, 0) /= sums(i, 0);
    }
    const DenseMatrix given = test::dense(field);
    DenseMatrix result(cells, 1, NAN);
    filter.apply(given, result);
    EXPECT_LT(distance(Matrix(result), filtered), 1e-14);
    result.fill(NAN);
    filter.applyTransposed(given, result);
    EXPECT_LT(distance(Matrix(result), product(weights, share)), 1e-14);
    EXPECT_EQ(Matrix(given), field);
}

TEST_P(ConeFilterTest, MaximumRuleGivesTheFirstCellsTheirLargestSum) {
    for (const unsigned count : {cells, (cells + 1) / 2, cells + 7}) {
        ConeFilter shared(GetParam().nx, GetParam().ny, GetParam().radius);
        shared.applyMaximumRule(count);
        double largest = 0.0;
        for (unsigned i = 0; i < std::min(count, cells); ++i) {
            largest = std::max(largest, sums(i, 0));
        }
        for (unsigned i = 0; i < cells; ++i) {
            const double expected = i < count ? largest : sums(i, 0);
            EXPECT_NEAR(shared.normaliser(i, 0), expected, 1e-13) << i;
        }
    }
}

TEST(ConeFilterRuleTest, MaximumRuleOfNoCellsChangesNothing) {
    ConeFilter filter(3, 1, 2.0);
    filter.applyMaximumRule(0);
    EXPECT_EQ(test::listOf(filter.normaliser), (std::vector<double>{3, 4, 3}));
}

TEST(ConeFilterRuleTest, MaximumRuleKeepsTheNormaliserAboveZero) {
    ConeFilter filter(2, 1, 0.0);
    EXPECT_EQ(filter.weights.getNumberOfElements(), 0);
    EXPECT_EQ(test::listOf(filter.normaliser), (std::vector<double>{0, 0}));
    filter.applyMaximumRule(1);
    EXPECT_EQ(test::listOf(filter.normaliser), (std::vector<double>{1e-8, 0}));
}

TEST(ConeFilterSizeTest, GridsWithoutCellsAreEmpty) {
    for (const auto& [nx, ny] : {std::pair{0U, 0U}, {0U, UINT_MAX}, {UINT_MAX, 0U}}) {
        const ConeFilter filter(nx, ny, 3.0);
        EXPECT_EQ(filter.weights.getRows(), 0U);
        EXPECT_EQ(filter.normaliser.getRows(), 0U);
        EXPECT_EQ(filter.weights.getMatrixState(), kmat::DESTROYED);
    }
    EXPECT_EQ(ConeFilter().normaliser.getRows(), 0U);
}

// Each would take a table of gigabytes, or hours of counting, if it were not refused first.
TEST(ConeFilterSizeTest, MoreWeightsThanAnIntCountsAreRefusedAtOnce) {
    EXPECT_THROW(ConeFilter(40000, 40000, 3.0), std::bad_alloc);
    EXPECT_THROW(ConeFilter(40000, 40000, 1e300), std::bad_alloc);
    EXPECT_THROW(ConeFilter(28 * 35, 49 * 35, 35.0), std::bad_alloc);  // of a mesh
    EXPECT_THROW(ConeFilter(INT_MAX, 1, 1.5), std::bad_alloc);
    EXPECT_THROW(ConeFilter(1, INT_MAX, 3e9), std::bad_alloc);
}

}  // namespace
