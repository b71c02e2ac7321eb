#include <gtest/gtest.h>

#include <algorithm>
#include <new>

#include "StiffnessPattern.h"
#include "support/matrices.h"

namespace {

using test::Matrix;

// All combinations of thin and wide, and one larger plate.
constexpr std::pair<unsigned, unsigned> PLATES[] = {{1, 1}, {1, 4}, {4, 1}, {2, 2}, {5, 3}};

// 1 where two degrees of freedom share an element, and 0 elsewhere.
Matrix couplings(unsigned nelx, unsigned nely) {
    const unsigned ndof = 2 * (nelx + 1) * (nely + 1);
    Matrix coupled(ndof, ndof);
    for (unsigned e = 0; e < nelx * nely; ++e) {
        const auto dofs = test::dofsOfElement(e / nely, e % nely, nely);
        for (const unsigned r : dofs) {
            for (const unsigned c : dofs) coupled(r, c) = 1.0;
        }
    }
    return coupled;
}

TEST(StiffnessPatternTest, CouplesExactlyTheDegreesOfFreedomOfAnElement) {
    for (const auto& [nelx, nely] : PLATES) {
        const Matrix coupled = couplings(nelx, nely);
        test::Entries expected;
        for (unsigned c = 0; c < coupled.columns; ++c) {
            for (unsigned r = 0; r <= c; ++r) {
                if (coupled(r, c) == 1.0) expected.push_back({r, c, 0.0});
            }
        }
        const kmat::SparseMatrix pattern = stiffnessPattern(nelx, nely);
        EXPECT_EQ(test::stored(pattern), expected) << nelx << " x " << nely;
        EXPECT_TRUE(pattern.hasElement(1, 0));  // symmetric
    }
}

TEST(StiffnessPatternTest, WithoutElementsIsEmpty) {
    for (const auto& [nelx, nely] : {std::pair{0U, 3U}, {3U, 0U}, {0U, 0U}}) {
        const kmat::SparseMatrix pattern = stiffnessPattern(nelx, nely);
        EXPECT_EQ(pattern.getMatrixState(), kmat::BUILT);
        EXPECT_EQ(pattern.getRows(), 2 * (nelx + 1) * (nely + 1));
        EXPECT_EQ(pattern.getNumberOfElements(), 0);
    }
}

TEST(StiffnessPatternTest, WithMoreEntriesThanAnIntCountsIsRefused) {
    EXPECT_THROW(stiffnessPattern(20000, 20000), std::bad_alloc);
}

TEST(ElementEntriesTest, PointAtTheUpperTriangleOfEachElement) {
    for (const auto& [nelx, nely] : PLATES) {
        kmat::SparseMatrix pattern = stiffnessPattern(nelx, nely);
        const auto entries = findElementEntries(pattern, nelx, nely);
        ASSERT_EQ(entries.size(), nelx * nely);
        for (unsigned e = 0; e < nelx * nely; ++e) {
            const auto dofs = test::dofsOfElement(e / nely, e % nely, nely);
            for (size_t i = 0; i < ELEMENT_UPPER_ENTRIES; ++i) {
                const auto [k, l] = ELEMENT_UPPER_PAIRS[i];
                EXPECT_LE(dofs[k], dofs[l]);
                EXPECT_EQ(pattern.getValues() + entries[e][i], &pattern.getValue(dofs[k], dofs[l]));
            }
        }
    }
}

TEST(ElementUpperPairsTest, GoRowByRow) {
    EXPECT_TRUE(std::is_sorted(ELEMENT_UPPER_PAIRS.begin(), ELEMENT_UPPER_PAIRS.end()));
    EXPECT_EQ(ELEMENT_UPPER_PAIRS.front(), (std::pair<size_t, size_t>{0, 0}));
    EXPECT_EQ(ELEMENT_UPPER_PAIRS.back(), (std::pair<size_t, size_t>{7, 7}));
}

}  // namespace
