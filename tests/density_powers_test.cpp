#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "DensityPowers.h"
#include "support/matrices.h"

namespace {

DensityPowers powersOf(const kmat::DenseMatrix& rhoPhys, double penalty) {
    DensityPowers powers(rhoPhys.getRows());
    const DesignGrids grids(3, 2, 2, 1);
    for (size_t ix = 0; ix < 3; ++ix) powers.computeColumn(grids, ix, rhoPhys, penalty);
    return powers;
}

TEST(DensityPowersTest, AreThoseOfEveryFineCell) {
    test::Random random;
    kmat::DenseMatrix rhoPhys(24, 1);
    test::fillRandom(rhoPhys, random, 0.01, 1.0);
    for (const double penalty : {3.0, 1.0, 2.5, 0.5}) {
        const DensityPowers powers = powersOf(rhoPhys, penalty);
        for (unsigned e = 0; e < 24; ++e) {
            EXPECT_EQ(powers.power[e], std::pow(rhoPhys(e, 0), penalty)) << e;
            EXPECT_EQ(powers.powerLessOne[e], std::pow(rhoPhys(e, 0), penalty - 1.0)) << e;
        }
    }
}

// Equal neighbours share a power, but never across columns, which may be computed in any order.
TEST(DensityPowersTest, OfRunsOfOneValueAreThoseOfEachCell) {
    std::vector<double> densities(24, 0.5);
    for (const size_t e : {2U, 3U, 12U, 23U}) densities[e] = 0.25;
    const kmat::DenseMatrix rhoPhys = test::column(densities);
    const DesignGrids grids(3, 2, 2, 1);
    DensityPowers powers(24);
    for (const size_t ix : {2U, 0U, 1U}) powers.computeColumn(grids, ix, rhoPhys, 3.0);
    for (unsigned e = 0; e < 24; ++e) {
        EXPECT_EQ(powers.power[e], std::pow(densities[e], 3.0)) << e;
        EXPECT_EQ(powers.powerLessOne[e], std::pow(densities[e], 2.0)) << e;
    }
}

TEST(DensityPowersTest, ComputesItsColumnAlone) {
    const DesignGrids grids(3, 2, 2, 1);
    DensityPowers powers(24);
    powers.computeColumn(grids, 1, kmat::DenseMatrix(24, 1, 0.5), 1.0);
    std::vector<double> expected(24);
    std::fill_n(expected.begin() + 8, 8, 0.5);
    EXPECT_EQ(powers.power, expected);
}

TEST(DensityPowersTest, OfDensityZeroAreNeverInfinite) {
    const kmat::DenseMatrix none(24, 1, 0.0);
    for (const auto& [penalty, powerLessOne] :
         {std::pair{3.0, 0.0}, {1.0, 1.0}, {0.999, 0.0}, {0.5, 0.0}, {0.0, 0.0}}) {
        EXPECT_EQ(powersOf(none, penalty).powerLessOne, std::vector<double>(24, powerLessOne));
    }
    EXPECT_EQ(powersOf(none, 0.5).power, std::vector<double>(24, 0.0));
}

}  // namespace
