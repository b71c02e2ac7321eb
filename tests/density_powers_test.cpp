#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "DensityPowers.h"
#include "support/matrices.h"

namespace {

constexpr double PENALTY = 2.5;

const DesignGrids GRIDS(3, 2, 2, 1);

// Equal neighbours share a power, but never across columns, which may be computed in any order.
TEST(DensityPowersTest, AreThoseOfEveryFineCell) {
    test::Random random;
    kmat::DenseMatrix rhoPhys(24, 1);
    for (double& density : rhoPhys) density = random.below(2) ? 0.5 : random.number(0.01, 1.0);
    DensityPowers powers(24);
    for (const std::size_t ix : {2U, 0U, 1U}) powers.computeColumn(GRIDS, ix, rhoPhys, PENALTY);
    for (unsigned e = 0; e < 24; ++e) {
        EXPECT_EQ(powers.power[e], std::pow(rhoPhys(e, 0), PENALTY)) << e;
        EXPECT_EQ(powers.powerLessOne[e], std::pow(rhoPhys(e, 0), PENALTY - 1.0)) << e;
    }
}

TEST(DensityPowersTest, OfDensityZeroAreNeverInfinite) {
    const kmat::DenseMatrix none(24, 1, 0.0);
    for (const auto& [penalty, powerLessOne] :
         {std::pair{3.0, 0.0}, {1.0, 1.0}, {0.999, 0.0}, {0.0, 0.0}}) {
        DensityPowers powers(24);
        powers.computeColumn(GRIDS, 0, none, penalty);
        EXPECT_EQ(powers.powerLessOne[0], powerLessOne);
        EXPECT_EQ(powers.power[0], penalty > 0.0 ? 0.0 : 1.0);
    }
}

}  // namespace
