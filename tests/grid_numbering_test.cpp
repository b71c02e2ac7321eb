#include <gtest/gtest.h>

#include <climits>
#include <new>
#include <tuple>

#include "CheckedProduct.h"
#include "GridNumbering.h"
#include "support/textbook.h"

namespace {

TEST(CheckedProductTest, MultipliesUpToTheRangeOfInt) {
    EXPECT_EQ(checkedProduct({}), 1U);
    EXPECT_EQ(checkedProduct({7}), 7U);
    EXPECT_EQ(checkedProduct({2, 3, 5}), 30U);
    EXPECT_EQ(checkedProduct({INT_MAX}), static_cast<unsigned>(INT_MAX));
    EXPECT_EQ(checkedProduct({32768, 65535}), 2147450880U);
}

TEST(CheckedProductTest, RefusesWhatIsBeyondButWithAFactorOfZeroIsZero) {
    EXPECT_THROW(checkedProduct({32768, 65536}), std::bad_alloc);  // 2^31
    EXPECT_THROW(checkedProduct({uint64_t{INT_MAX} + 1}), std::bad_alloc);
    EXPECT_THROW(checkedProduct({1ULL << 32, 1ULL << 32}), std::bad_alloc);  // 0 modulo 2^64
    EXPECT_EQ(checkedProduct({UINT64_MAX, UINT64_MAX, 0}), 0U);
}

TEST(ElementDofsTest, GoAroundTheElement) {
    EXPECT_EQ(elementDofs(0, 0, 2), (ElementDofs{0, 1, 4, 5, 6, 7, 2, 3}));
    EXPECT_EQ(elementDofs(2, 1, 4), test::dofsOfElement(2, 1, 3));
}

// That they refuse more cells than an int counts is tested through the exports.
TEST(DesignGridsTest, CountTheirCellsColumnByColumn) {
    const DesignGrids grids(4, 3, 2, 5);
    EXPECT_EQ(grids.numberOfCoarseElements, 12U);
    EXPECT_EQ(grids.numberOfElements, 48U);
    EXPECT_EQ(grids.numberOfMeshElements, 1200U);
    EXPECT_EQ(DesignGrids(0, UINT_MAX, 1, 1).numberOfMeshElements, 0U);
    EXPECT_EQ(grids.coarseElement(2, 1), 7U);
    // Cell (5, 3) of the fine grid, whose columns hold 6 cells.
    EXPECT_EQ(grids.fineElement(2, 1, 1, 1), 33U);
}

// With equal refinements it is tested with the passive cells.
TEST(DesignGridsTest, CoarseCellOtherwiseIsThatOfAnotherColumn) {
    const DesignGrids coarserMesh(4, 3, 2, 1);  // leaves the coarse grid of 12 cells
    EXPECT_EQ(coarserMesh.getCoarseGridIndex(5), 2);
    EXPECT_EQ(coarserMesh.getCoarseGridIndex(6), 3);
    EXPECT_EQ(coarserMesh.getCoarseGridIndex(11), 5);
    EXPECT_EQ(coarserMesh.getCoarseGridIndex(47), 23);
    const DesignGrids finerMesh(4, 3, 1, 2);
    EXPECT_EQ(finerMesh.getCoarseGridIndex(4), 1);
    EXPECT_EQ(finerMesh.getCoarseGridIndex(11), 5);
}

TEST(DesignGridsTest, NoCoarseCellWhereADivisorIsZero) {
    EXPECT_EQ(coarseCellOfFineCell(5, 0, 1, 3), -1);
    EXPECT_EQ(coarseCellOfFineCell(5, 1, 0, 3), -1);
    EXPECT_EQ(coarseCellOfFineCell(5, 1, 1, 0), -1);
}

}  // namespace
