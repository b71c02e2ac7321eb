#include "Equilibrium.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <new>

#include "kmat_exception.h"
#include "support/matrices.h"
#include "support/plates.h"

namespace {

using test::distance;
using test::Matrix;
using test::Records;

constexpr double STIFF = 1e8;

double plainDof(unsigned node, float direction) { return 2.0 * node + direction; }

std::vector<TopologyOptimizationComponentData> listOf(const Records& records) {
    return TopologyOptimizationComponentData::load(records.data(), records.count());
}

// Nodes count from 0 to 11 in columns of 3, degrees of freedom to 23. Held at the left edge, with
// loads in two of three cases.
class EquilibriumTest : public testing::Test {
protected:
    Equilibrium plate{3, 2, 1, 3};
    const test::Settings settings = test::cantilever(3, 2);

    EquilibriumTest() {
        plate.supports = listOf(settings.supports);
        plate.loads = listOf(Records().add(3, 1, 0.5F, 2).add(1, 2, 0, -1, 2));
    }

    bool locate() { return plate.locateRecords(plainDof); }

    // Of a solid plate. The values are the exact ones in double precision.
    void fillSolid() {
        plate.fillWithZeros();
        const Matrix K = test::plateStiffness(3, 2, 1, [](unsigned) { return 1.0; });
        for (const auto& [r, c, v] : plate.K) plate.K.getValue(r, c) = K(r, c);
    }

    void solveSolid() {
        ASSERT_TRUE(locate());
        for (auto& f : plate.F) f.fill(0.0);
        plate.addLoads();
        fillSolid();
        plate.hold(Equilibrium::SupportStiffness::REPLACES);
        plate.analyzeOnce();
        ASSERT_TRUE(plate.factorize());
        for (int lc = 0; lc < 3; ++lc) ASSERT_TRUE(plate.solveLoadCase(lc));
    }
};

TEST_F(EquilibriumTest, CountsItsNodesAndLeavesItsVectorsUnset) {
    EXPECT_EQ(plate.nodesX, 4U);
    EXPECT_EQ(plate.nodesY, 3U);
    EXPECT_EQ(plate.ndof, 24U);
    EXPECT_EQ(plate.numLoadCases(), 3);
    for (int lc = 0; lc < 3; ++lc) {
        EXPECT_EQ(plate.F[lc].getRows(), 24U);
        EXPECT_EQ(plate.U[lc].getRows(), 24U);
        EXPECT_TRUE(test::isUnset(plate.F[lc]));
        EXPECT_TRUE(test::isUnset(plate.U[lc]));
    }
    EXPECT_EQ(Equilibrium(3, 2, 1, -1).numLoadCases(), 0);
}

TEST_F(EquilibriumTest, HoldsTheMatricesOfASplitElement) {
    const Equilibrium split(3, 2, 2, 1);
    for (unsigned m = 0; m < 4; ++m) {
        Matrix block(8, 8);
        std::copy_n(split.KE.get() + 64 * m, 64, block.values.begin());
        EXPECT_LT(distance(block, test::subElementMatrix(2, m % 2, m / 2)), 1e-15);
    }
}

TEST(EquilibriumSizeTest, BeyondTheRangeOfIntIsRefusedAtOnce) {
    EXPECT_THROW(Equilibrium(UINT_MAX, 0, 1, 0), std::bad_alloc);
    EXPECT_THROW(Equilibrium(0, INT_MAX, 1, 0), std::bad_alloc);
    EXPECT_THROW(Equilibrium(40000, 40000, 1, 0), std::bad_alloc);
    EXPECT_THROW(Equilibrium(1, 1, 65536, 0), std::bad_alloc);
    EXPECT_THROW(Equilibrium(3, 2, 1, INT_MAX), std::bad_alloc);
}

TEST_F(EquilibriumTest, RecordsOnTheGridAreLocatedInTheirOrder) {
    plate.supports = listOf(Records().add(3, 2, 1).add(0, 0, 0).add(1, 0, 0).add(1, 1, 1));
    EXPECT_TRUE(locate());
    EXPECT_EQ(plate.heldDofs, (std::vector<unsigned>{23, 0, 6, 9}));
    plate.supports = listOf(Records().add(0, 1, 0));
    EXPECT_TRUE(locate());
    EXPECT_EQ(plate.heldDofs, (std::vector<unsigned>{2}));
}

TEST_F(EquilibriumTest, RecordsOutsideTheGridAreRefused) {
    for (const float outside : {-1.0F, 4.0F, 3e9F, NAN, INFINITY, -INFINITY}) {
        for (const auto list : {&Equilibrium::loads, &Equilibrium::supports}) {
            for (const Records& record : {Records().add(outside, 1, 0),
                                          Records().add(1, outside, 0), Records().add(1, 3, 0)}) {
                const auto good = plate.*list;
                plate.*list = listOf(record);
                EXPECT_FALSE(locate()) << outside;
                plate.*list = good;
                EXPECT_TRUE(locate());
            }
        }
    }
}

TEST_F(EquilibriumTest, DirectionsOutsideTheSystemAreRefused) {
    for (const float direction : {24.0F, -1.0F, 1e30F, -1e30F, NAN, INFINITY}) {
        plate.supports = listOf(Records().add(0, 0, direction));
        EXPECT_FALSE(locate()) << direction;
    }
    plate.supports = listOf(Records().add(0, 0, 23));
    EXPECT_TRUE(locate());
}

TEST_F(EquilibriumTest, LoadCasesThatDoNotExistAreRefused) {
    for (const float loadCase : {-1.0F, 3.0F, 1e9F, NAN}) {
        plate.loads = listOf(Records().add(1, 1, 1, 1, loadCase));
        EXPECT_FALSE(locate()) << loadCase;
    }
}

TEST_F(EquilibriumTest, ForcesThatAreNotFiniteAreRefused) {
    for (const float force : {NAN, INFINITY, -INFINITY}) {
        plate.loads = listOf(Records().add(1, 1, force, 1));
        EXPECT_FALSE(locate()) << force;
        plate.loads = listOf(Records().add(1, 1, 1, force));
        EXPECT_FALSE(locate()) << force;
    }
    plate.loads = listOf(Records().add(1, 1, 3e38F, -3e38F));
    EXPECT_TRUE(locate());
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

TEST_F(EquilibriumTest, LoadsAreAddedToTheirCases) {
    plate.loads = listOf(Records().add(3, 1, 0.5F, 2).add(3, 1, 0.25F, -4).add(1, 2, 0, -1, 2));
    for (auto& f : plate.F) f.fill(0.0);
    plate.addLoads();
    std::vector<double> first(24);
    first[20] = 0.75;
    first[21] = -2.0;
    EXPECT_EQ(test::listOf(plate.F[0]), first);
    EXPECT_EQ(test::listOf(plate.F[1]), std::vector<double>(24));
    std::vector<double> third(24);
    third[11] = -1.0;
    EXPECT_EQ(test::listOf(plate.F[2]), third);
}

TEST_F(EquilibriumTest, FillingBuildsThePatternOnceAndThenZeroesIt) {
    EXPECT_TRUE(plate.fillWithZeros());
    EXPECT_EQ(plate.K.getMatrixState(), kmat::BUILT);
    EXPECT_EQ(plate.elementEntries.size(), 6U);
    for (const auto& entry : plate.K) plate.K.getValue(entry.row, entry.column) = 7.0;
    const double* const storage = plate.K.getValues();
    EXPECT_FALSE(plate.fillWithZeros());
    EXPECT_EQ(plate.K.getValues(), storage);
    for (const auto& entry : plate.K) EXPECT_EQ(entry.value, 0.0);
}

TEST_F(EquilibriumTest, SupportsReplaceTheDiagonalOrAddToIt) {
    plate.supports = listOf(Records().add(0, 1, 0).add(2, 2, 1).add(0, 1, 0));  // one of them twice
    ASSERT_TRUE(locate());
    for (const auto& [rule, once, twice] :
         {std::tuple{Equilibrium::SupportStiffness::REPLACES, STIFF, STIFF},
          {Equilibrium::SupportStiffness::ADDS, STIFF + 3, 2 * STIFF + 3}}) {
        plate.fillWithZeros();
        for (unsigned d = 0; d < 24; ++d) plate.K.getValue(d, d) = 3.0;
        plate.hold(rule);
        for (unsigned d = 0; d < 24; ++d) {
            EXPECT_EQ(plate.K.getValue(d, d), d == 2 ? twice : d == 17 ? once : 3.0) << d;
        }
    }
}

TEST_F(EquilibriumTest, SolvesEveryLoadCase) {
    solveSolid();
    Matrix K = test::plateStiffness(3, 2, 1, [](unsigned) { return 1.0; });
    for (unsigned d = 0; d < 6; ++d) K(d, d) = STIFF;
    Matrix F(24, 3);
    F(20, 0) = 0.5;
    F(21, 0) = 2.0;
    F(11, 2) = -1.0;
    const Matrix U = gaussSolve(K, F);
    for (unsigned i = 0; i < 72; ++i) {
        // Held ones move by their reaction / 1e8, so each has a scale of its own.
        const double tolerance = 1e-10 * std::fabs(U.values[i]);
        EXPECT_NEAR(plate.U[i / 24](i % 24, 0), U.values[i], tolerance) << i;
    }
}

TEST_F(EquilibriumTest, AnalysesOnce) {
    solveSolid();
    const Matrix before(plate.U[0]);
    plate.analyzeOnce();  // a second analysis would drop the factorisation
    ASSERT_TRUE(plate.solveLoadCase(0));
    EXPECT_EQ(Matrix(plate.U[0]), before);
}

TEST_F(EquilibriumTest, AFailedFactorisationLeavesNothingRecorded) {
    solveSolid();
    plate.K.getValue(23, 23) = -1.0;
    EXPECT_FALSE(plate.factorize());
    EXPECT_EQ(kmat::KmatException::getLastException(), nullptr);
    fillSolid();
    plate.hold(Equilibrium::SupportStiffness::ADDS);
    EXPECT_TRUE(plate.factorize());
}

TEST_F(EquilibriumTest, AFailedSolveKeepsTheDisplacements) {
    solveSolid();
    const Matrix before(plate.U[0]);
    plate.F[0] = kmat::DenseMatrix(3, 1);  // does not fit the system
    EXPECT_FALSE(plate.solveLoadCase(0));
    EXPECT_EQ(Matrix(plate.U[0]), before);
}

}  // namespace
