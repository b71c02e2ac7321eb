#include "Equilibrium.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "kmat_exception.h"
#include "support/matrices.h"
#include "support/plates.h"

namespace {

using test::Matrix;
using test::Records;

constexpr double STIFF = 1e8;

double plainDof(unsigned node, float direction) { return 2.0 * node + direction; }

std::vector<TopologyOptimizationComponentData> listOf(const Records& records) {
    return TopologyOptimizationComponentData::load(records.data(), records.count());
}

// Nodes count from 0 to 11 in columns of 3, degrees of freedom to 23; three load cases.
class EquilibriumTest : public testing::Test {
protected:
    Equilibrium plate{3, 2, 1, 3};

    bool locates(const Records& loads, const Records& supports) {
        plate.loads = listOf(loads);
        plate.supports = listOf(supports);
        return plate.locateRecords(plainDof);
    }

    void fillDiagonal(double value) {
        plate.fillWithZeros();
        for (unsigned d = 0; d < 24; ++d) plate.K.getValue(d, d) = value;
    }
};

TEST_F(EquilibriumTest, LeavesItsVectorsUnset) {
    EXPECT_EQ(plate.numLoadCases(), 3);
    for (int lc = 0; lc < 3; ++lc) {
        EXPECT_TRUE(test::isUnset(plate.F[lc]));
        EXPECT_TRUE(test::isUnset(plate.U[lc]));
    }
    EXPECT_EQ(Equilibrium(3, 2, 1, -1).numLoadCases(), 0);
}

TEST_F(EquilibriumTest, RecordsThatFitThePlateAreLocatedInTheirOrder) {
    const Records loads = Records().add(3, 2, 3e38F, -3e38F, 2).add(0, 0, 0);
    const Records supports = Records().add(3, 2, 1).add(0, 0, 0).add(1, 0, 0).add(0, 0, 23);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(locates(loads, supports));
        EXPECT_EQ(plate.heldDofs, (std::vector<unsigned>{23, 0, 6, 23}));
    }
}

TEST_F(EquilibriumTest, RecordsThatDoNotFitThePlateAreRefused) {
    for (const float bad : {-1.0F, -3e9F, 24.0F, 3e9F, 1e30F, NAN, INFINITY, -INFINITY}) {
        const bool isForce = std::isfinite(bad);
        for (const Records& record : {Records().add(bad, 1, 0), Records().add(1, bad, 0),
                                      Records().add(4, 1, 0), Records().add(1, 3, 0)}) {
            EXPECT_FALSE(locates(record, {})) << bad;
            EXPECT_FALSE(locates({}, record)) << bad;
        }
        EXPECT_FALSE(locates({}, Records().add(0, 0, bad))) << bad;
        EXPECT_FALSE(locates(Records().add(1, 1, 1, 1, bad), {})) << bad;
        EXPECT_EQ(locates(Records().add(1, 1, bad, 1), {}), isForce) << bad;
        EXPECT_EQ(locates(Records().add(1, 1, 1, bad), {}), isForce) << bad;
    }
    EXPECT_FALSE(locates(Records().add(1, 1, 1, 1, 3), {}));  // of the cases 0 to 2
}

// All 4096 ways to hold two elements, against the rank of the two translations and the rotation at
// the held degrees of freedom.
TEST(EquilibriumSupportTest, HoldsAsARigidBodyWhenNoRigidMotionIsLeft) {
    Equilibrium plate(2, 1, 1, 0);
    for (unsigned held = 0; held < 4096; ++held) {
        Matrix motion(12, 3);
        plate.heldDofs.clear();
        for (unsigned d = 0; d < 12; ++d) {
            if (!(held >> d & 1)) continue;
            plate.heldDofs.push_back(d);
            const double x = d / 4;
            const double y = d / 2 % 2;
            motion(d, d % 2) = 1.0;
            motion(d, 2) = d % 2 ? x : -y;
        }
        const Matrix G = product(transposed(motion), motion);  // regular when the rank is full
        const double determinant =
            G(0, 0) * (G(1, 1) * G(2, 2) - G(1, 2) * G(1, 2)) - G(0, 2) * G(0, 2) * G(1, 1);
        EXPECT_EQ(plate.isHeldAsRigidBody(), determinant != 0.0) << held;
    }
}

TEST_F(EquilibriumTest, FillingBuildsThePatternOnceAndThenZeroesIt) {
    EXPECT_TRUE(plate.fillWithZeros());
    std::fill_n(plate.K.getValues(), plate.K.getNumberOfElements(), 7.0);
    const double* const storage = plate.K.getValues();
    EXPECT_FALSE(plate.fillWithZeros());
    EXPECT_EQ(plate.K.getValues(), storage);
    for (const auto& entry : plate.K) EXPECT_EQ(entry.value, 0.0);
}

TEST_F(EquilibriumTest, SupportsReplaceTheDiagonalOrAddToIt) {
    ASSERT_TRUE(
        locates({}, Records().add(0, 1, 0).add(2, 2, 1).add(0, 1, 0)));  // one of them twice
    for (const auto& [rule, once, twice] :
         {std::tuple{Equilibrium::SupportStiffness::REPLACES, STIFF, STIFF},
          {Equilibrium::SupportStiffness::ADDS, STIFF + 3, 2 * STIFF + 3}}) {
        fillDiagonal(3.0);
        plate.hold(rule);
        for (unsigned d = 0; d < 24; ++d) {
            EXPECT_EQ(plate.K.getValue(d, d), d == 2 ? twice : d == 17 ? once : 3.0) << d;
        }
    }
}

TEST_F(EquilibriumTest, AnalysesOnceAndKeepsTheDisplacementsThroughFailures) {
    const std::vector<double> solution(24, 3.0);
    fillDiagonal(4.0);
    plate.F[0].fill(12.0);
    plate.analyzeOnce();
    ASSERT_TRUE(plate.factorize());
    plate.analyzeOnce();  // a second analysis would drop the factorisation
    ASSERT_TRUE(plate.solveLoadCase(0));
    EXPECT_EQ(test::listOf(plate.U[0]), solution);
    plate.K.getValue(23, 23) = -1.0;
    EXPECT_FALSE(plate.factorize());
    EXPECT_EQ(kmat::KmatException::getLastException(), nullptr);
    plate.F[0] = kmat::DenseMatrix(3, 1);  // does not fit the system
    EXPECT_FALSE(plate.solveLoadCase(0));
    EXPECT_EQ(test::listOf(plate.U[0]), solution);
}

}  // namespace
