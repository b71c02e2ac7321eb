#include <gtest/gtest.h>

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

// Where each element's entries lie in it shows in every solution.
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

}  // namespace
