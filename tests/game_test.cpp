#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "SolverGame.h"
#include "test_support.h"

namespace {

using test::Matrix;
using test::Records;
using Floats = std::vector<float>;
using Score = std::pair<float, Floats>;  // objective and element values

constexpr float FAILED = std::numeric_limits<float>::max();

struct Plate {
    int nelx;
    int nely;
    Records loads;
    Records supports;
    int loadCases = 1;

    SolverGame solver() const {
        const auto& load = TopologyOptimizationComponentData::load;
        return SolverGame(nelx, nely, 1, 1, load(loads.data(), loads.count()),
                          load(supports.data(), supports.count()), loadCases);
    }
    Floats uniform(float d) const { return Floats(static_cast<size_t>(nelx * nely), d); }
    Floats random(test::Random& random) const {
        Floats densities = uniform(0);
        for (float& d : densities) d = static_cast<float>(random.number(0.2, 1.0));
        return densities;
    }
    Score failure() const { return {FAILED, uniform(0)}; }
    unsigned dof(int x, int y, int direction) const {
        return static_cast<unsigned>(2 * (x * (nely + 1) + y) + direction);
    }
};

// Two load cases, two loads on one node, a degree of freedom held twice.
Plate cantilever() {
    Plate plate{5, 3, {}, test::slidingLeftEdge(3), 2};
    plate.loads.add(5, 0, 0.25F, 1.0F).add(5, 0, 0.5F).add(2, 3, -1.0F, 0.5F, 1);
    plate.supports.add(0, 1, 0);
    return plate;
}

Score score(SolverGame& solver, const Floats& densities) {
    Score result{0.0F, Floats(densities.size(), -1.0F)};
    result.first = solver.solve(densities.data(), result.second.data());
    return result;
}

Score score(const Plate& plate, const Floats& densities) {
    SolverGame solver = plate.solver();
    return score(solver, densities);
}

Score solidScore(const Plate& plate) { return score(plate, plate.uniform(1)); }

TEST(SolverGameTest, UniformTensionGivesTheExactLinearField) {
    const Plate plate{4, 3, test::tension(4, 3, 1), test::slidingLeftEdge(3)};
    // The stiffness is linear in the density, the weight of the energy cubic; void keeps 1e-13.
    for (const auto& [density, modulus, weight] :
         {std::array{1.0F, 1.0F, 1.0F}, {0.5F, 0.5F, 0.125F}, {0.0F, 1e-13F, 1e-13F}}) {
        SolverGame solver = plate.solver();
        const auto [objective, values] = score(solver, plate.uniform(density));
        const auto& u = solver.getDisplacements(0);
        for (int x = 0; x <= 4; ++x) {
            for (int y = 0; y <= 3; ++y) {
                EXPECT_NEAR(u(plate.dof(x, y, 0), 0) * modulus, x, 3e-6);
                EXPECT_NEAR(u(plate.dof(x, y, 1), 0) * modulus, -0.3 * y, 3e-6);
            }
        }
        const double energy = weight / std::pow(modulus, 2.0);
        for (const float value : values) EXPECT_NEAR(value / energy, 1.0, 3e-6);
        EXPECT_NEAR(objective / energy, 12.0, 3e-5);
    }
}

TEST(SolverGameTest, StateAndValuesMatchADenseReference) {
    test::Random random;
    const Matrix KE = test::exactElementMatrix();
    const Plate plate = cantilever();
    SolverGame solver = plate.solver();
    const unsigned n = plate.dof(6, 0, 0);
    Matrix F(n, 2);
    F(plate.dof(5, 0, 0), 0) = 0.75;
    F(plate.dof(5, 0, 1), 0) = 1.0;
    F(plate.dof(2, 3, 0), 1) = -1.0;
    F(plate.dof(2, 3, 1), 1) = 0.5;
    for (int round = 0; round < 3; ++round) {  // the later rounds refill
        const Floats densities = plate.random(random);
        const auto [objective, values] = score(solver, densities);
        Matrix K(n, n);
        for (const unsigned d : {0U, 1U, 2U, 2U, 4U, 6U}) K(d, d) += 1e8;
        double total = 0.0;
        for (unsigned e = 0; e < 15; ++e) {
            const unsigned p = 2 * (e / 3 * 4 + e % 3);
            const unsigned q = p + 8;
            const std::array dof{p, p + 1, q, q + 1, q + 2, q + 3, p + 2, p + 3};
            double energy = 0.0;
            for (const int lc : {0, 1}) {
                const auto& u = solver.getDisplacements(lc);
                float sum = 0.0F;  // single precision here and in K, as documented
                for (unsigned i = 0; i < 64; ++i) {
                    const unsigned r = dof[i / 8];
                    const unsigned c = dof[i % 8];
                    if (lc == 0) K(r, c) += static_cast<float>(KE.values[i] * densities[e]);
                    sum = static_cast<float>(sum + KE.values[i] * u(r, 0) * u(c, 0));
                }
                energy += std::max(0.0F, sum) * std::pow(densities[e], 3.0);
            }
            total += energy;
            EXPECT_NEAR(values[e], energy, 1e-6 * (0.01 + energy));
        }
        EXPECT_NEAR(objective, total, 1e-6 * total);
        const Matrix U = gaussSolve(K, F);
        for (unsigned i = 0; i < 2 * n; ++i) {
            // Held ones move by their reaction / 1e8, so each has a scale of its own.
            const double u = solver.getDisplacements(static_cast<int>(i / n))(i % n, 0);
            EXPECT_NEAR(u, U.values[i], 1e-6 * std::fabs(U.values[i]) + 1e-14);
        }
    }
}

TEST(SolverGameTest, SolidEnergyIsTheWorkOfTheLoadsAndNeverNegative) {
    // Beyond the load the plate moves almost rigidly: the energies there are round-off.
    const Plate plate{60, 40, Records().add(20, 40, 0.5F, 2.0F), test::slidingLeftEdge(40)};
    SolverGame solver = plate.solver();
    const auto [objective, values] = score(solver, plate.uniform(1));
    const auto& u = solver.getDisplacements(0);
    const double work = 0.5 * u(plate.dof(20, 40, 0), 0) + 2.0 * u(plate.dof(20, 40, 1), 0);
    EXPECT_NEAR(objective, work, 1e-3 * work);
    for (const float value : values) EXPECT_GE(value, 0.0F);
}

TEST(SolverGameTest, LoadCasesSuperpose) {
    Plate first = cantilever();
    Plate second = first;
    first.loads.floats.resize(10);
    second.loads = Records().add(2, 3, -1.0F, 0.5F);
    EXPECT_FLOAT_EQ(solidScore(first).first + solidScore(second).first,
                    solidScore(cantilever()).first);
}

TEST(SolverGameTest, RepeatedEvaluationsGiveTheSameBitsAlsoAfterFailures) {
    test::Random random;
    const Plate plate = cantilever();
    const Floats design = plate.random(random);
    const Score expected = score(plate, design);
    EXPECT_GT(expected.first, 0.0F);
    SolverGame solver = plate.solver();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(score(solver, plate.uniform(-1)), plate.failure());
        EXPECT_EQ(solver.getDisplacements(1).length(), 0.0);
        for (int i = 0; i < 2; ++i) EXPECT_EQ(score(solver, design), expected);
        score(solver, plate.random(random));
        Floats values = plate.uniform(-1);
        EXPECT_EQ(solver.solve(nullptr, values.data()), FAILED);
        EXPECT_EQ(values, plate.uniform(0));
        EXPECT_EQ(solver.solve(design.data(), nullptr), expected.first);
    }
}

// All 4096 ways to support two elements, against the rank of the rigid motions (two translations
// and the rotation) at the held degrees of freedom.
TEST(SolverGameTest, FailsExactlyWhenTheSupportsLeaveARigidMotion) {
    for (unsigned held = 0; held < 4096; ++held) {
        Plate plate{2, 1, Records().add(1, 1, 0.3F, 1.0F), {}};
        Matrix motion(12, 3);
        for (unsigned d = 0; d < 12; ++d) {
            if (!(held >> d & 1)) continue;
            const auto x = static_cast<float>(d / 4);
            const auto y = static_cast<float>(d / 2 % 2);
            plate.supports.add(x, y, static_cast<float>(d % 2));
            motion(d, d % 2) = 1.0;
            motion(d, 2) = d % 2 ? x : -y;
        }
        const Matrix G = product(transposed(motion), motion);  // regular when the rank is full
        const double determinant =
            G(0, 0) * (G(1, 1) * G(2, 2) - G(1, 2) * G(1, 2)) - G(0, 2) * G(0, 2) * G(1, 1);
        const Score result = solidScore(plate);
        EXPECT_EQ(result == plate.failure(), determinant == 0.0) << held;
        EXPECT_TRUE(determinant == 0.0 || result.first < 100.0F) << held;
    }
}

TEST(SolverGameTest, RecordsThatDoNotFitThePlateFailEveryEvaluation) {
    const auto fails = [](Records Plate::*list, float x, float y, float fx, float loadCase) {
        Plate plate = cantilever();
        (plate.*list).add(x, y, fx, 0, loadCase);
        SolverGame solver = plate.solver();
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(score(solver, plate.uniform(1)), plate.failure());
        }
    };
    for (const float off : {-1.0F, 6.0F, 3e9F, -INFINITY, NAN}) {
        for (const auto list : {&Plate::loads, &Plate::supports}) {
            fails(list, off, 2, 0, 0);
            fails(list, 1, off, 0, 0);
        }
        fails(&Plate::loads, 1, 1, 1, off);
        fails(&Plate::supports, 0, 0, 8 * off, 0);  // 48 degrees of freedom
    }
    fails(&Plate::loads, 1, 1, 1, 2);
    fails(&Plate::supports, 0, 4, 0, 0);
}

TEST(SolverGameTest, DirectionsAreTruncatedAndEmptyInputIsHarmless) {
    Plate plate{2, 2, Records().add(2, 1, 1, 1), Records().add(0, 0, 0).add(0, 0, 1).add(0, 2, 0)};
    const Score expected = solidScore(plate);
    plate.supports = Records().add(0, 0, -0.5F).add(0, 0, 1.7F).add(0, 2, 0.9F);
    EXPECT_EQ(solidScore(plate), expected);
    plate.loads = {};
    EXPECT_EQ(solidScore(plate).first, 0.0F);
    plate.loadCases = -1;
    EXPECT_EQ(solidScore(plate).first, 0.0F);
    for (const auto& [nelx, nely] : {std::pair{0, 3}, {3, 0}, {-2, 2}}) {
        const float none = 0.0F;
        EXPECT_GE((Plate{nelx, nely, {}, plate.supports}.solver().solve(&none, nullptr)), 0.0F);
    }
}

TEST(SolverGameDeathTest, RefinementOtherThanOneStopsTheProcess) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const std::string place = ": SparseMatrixLib/SolverGame.cpp:[0-9]+: SolverGame: Assertion `";
    EXPECT_DEATH(SolverGame(1, 1, 2, 3, {}, {}, 1), place + "ndopt == 1' failed");
    EXPECT_DEATH(SolverGame(1, 1, 1, 0, {}, {}, 1), place + "ndvis == 1' failed");
}

}  // namespace
