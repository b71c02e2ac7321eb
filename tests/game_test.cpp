#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "SolverGame.h"
#include "support/plates.h"
#include "support/textbook.h"

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
    Floats uniform(float d) const { return Floats(static_cast<std::size_t>(nelx * nely), d); }
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

// Of 5 x 3 elements. Each contribution is rounded to single precision.
Matrix roundedStiffness(const Floats& densities) {
    const Matrix KE = test::exactElementMatrix();
    Matrix K(48, 48);
    for (unsigned e = 0; e < 15; ++e) {
        const auto dof = test::dofsOfElement(e / 3, e % 3, 3);
        for (unsigned i = 0; i < 64; ++i) {
            K(dof[i % 8], dof[i / 8]) += static_cast<float>(KE.values[i] * densities[e]);
        }
    }
    return K;
}

// An element's energy: summed in single precision for each load case, weighted with the cube of the
// density.
double energyOf(unsigned e, const SolverGame& solver, double density) {
    const Matrix KE = test::exactElementMatrix();
    const auto dof = test::dofsOfElement(e / 3, e % 3, 3);
    double energy = 0.0;
    for (const int lc : {0, 1}) {
        const auto& u = solver.getDisplacements(lc);
        float sum = 0.0F;
        for (unsigned i = 0; i < 64; ++i) {
            sum = static_cast<float>(sum + KE.values[i] * u(dof[i / 8], 0) * u(dof[i % 8], 0));
        }
        energy += std::max(0.0F, sum) * std::pow(density, 3.0);
    }
    return energy;
}

TEST(SolverGameTest, MatchesADenseReference) {
    test::Random random;
    const Plate plate = cantilever();
    SolverGame solver = plate.solver();
    Matrix F(48, 2);
    F(plate.dof(5, 0, 0), 0) = 0.75;
    F(plate.dof(5, 0, 1), 0) = 1.0;
    F(plate.dof(2, 3, 0), 1) = -1.0;
    F(plate.dof(2, 3, 1), 1) = 0.5;
    for (int round = 0; round < 3; ++round) {  // the later rounds refill
        const Floats densities = plate.random(random);
        const auto [objective, values] = score(solver, densities);
        Matrix K = roundedStiffness(densities);
        for (const unsigned d : {0U, 1U, 2U, 2U, 4U, 6U}) K(d, d) += 1e8;
        const Matrix U = gaussSolve(K, F);
        for (unsigned i = 0; i < 96; ++i) {
            // Held ones move by their reaction / 1e8, so each has a scale of its own.
            const double u = solver.getDisplacements(static_cast<int>(i / 48))(i % 48, 0);
            EXPECT_NEAR(u, U.values[i], 1e-6 * std::fabs(U.values[i]) + 1e-14) << i;
        }
        double total = 0.0;
        for (unsigned e = 0; e < 15; ++e) {
            const double energy = energyOf(e, solver, densities[e]);
            EXPECT_NEAR(values[e], energy, 1e-6 * (0.01 + energy)) << e;
            total += energy;
        }
        EXPECT_NEAR(objective, total, 1e-6 * total);
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

// Which supports leave a rigid motion, and which records do not fit a plate, is tested with the
// equilibrium.
TEST(SolverGameTest, APlateThatCannotBeSolvedFailsInEveryEvaluation) {
    Plate turning{2, 2, Records().add(2, 1, 1, 1), Records().add(0, 0, 0).add(0, 0, 1)};
    Plate loadOutside = cantilever();
    loadOutside.loads.add(6, 2, 0);
    Plate supportOutside = cantilever();
    supportOutside.supports.add(0, 0, 48);  // of 48 degrees of freedom
    for (const Plate& plate : {turning, loadOutside, supportOutside}) {
        SolverGame solver = plate.solver();
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(score(solver, plate.uniform(1)), plate.failure());
        }
    }
    turning.supports.add(0, 2, 0);
    EXPECT_LT(solidScore(turning).first, 1000.0F);
}

TEST(SolverGameTest, DensitiesThatAreNotFiniteFailAndTheNextCallStartsClean) {
    const Plate plate = cantilever();
    const Score expected = solidScore(plate);
    SolverGame solver = plate.solver();
    for (const float bad : {NAN, INFINITY, -INFINITY}) {
        for (const std::size_t cell : {0U, 7U, 14U}) {
            Floats densities = plate.uniform(1);
            densities[cell] = bad;
            EXPECT_EQ(score(solver, densities), plate.failure());
            EXPECT_EQ(score(solver, plate.uniform(1)), expected);
        }
    }
}

TEST(SolverGameTest, DirectionsAreTruncated) {
    Plate plate{2, 2, Records().add(2, 1, 1, 1), Records().add(0, 0, 0).add(0, 0, 1).add(0, 2, 0)};
    const Score expected = solidScore(plate);
    plate.supports = Records().add(0, 0, -0.5F).add(0, 0, 1.7F).add(0, 2, 0.9F);
    EXPECT_EQ(solidScore(plate), expected);
}

TEST(SolverGameTest, WithoutLoadsScoresZero) {
    Plate plate{2, 2, {}, test::slidingLeftEdge(2)};
    EXPECT_EQ(solidScore(plate), Score(0.0F, plate.uniform(0)));
    plate.loadCases = -1;
    EXPECT_EQ(solidScore(plate), Score(0.0F, plate.uniform(0)));
}

TEST(SolverGameTest, PlatesWithoutElementsAreHarmless) {
    const float none = 0.0F;
    for (const auto& [nelx, nely] : {std::pair{0, 3}, {3, 0}, {-2, 2}, {2, -2}}) {
        const float far = nelx > 0 ? static_cast<float>(nelx) : 0.0F;
        const float low = nely > 0 ? static_cast<float>(nely) : 0.0F;
        const Plate held{nelx,
                         nely,
                         {},
                         Records().add(0, 0, 0).add(0, 0, 1).add(far, low, nelx > 0 ? 1.0F : 0.0F)};
        EXPECT_EQ(held.solver().solve(&none, nullptr), FAILED) << nelx << " " << nely;
        EXPECT_EQ(held.solver().getNumberOfElements(), 0);
    }
}

TEST(SolverGameTest, ZeroesAnArrayOfThatManyNumbers) {
    Floats floats = {1, 2, 3};
    SolverGame::zeroArray(2, floats.data());
    EXPECT_EQ(floats, (Floats{0, 0, 3}));
    std::vector<double> doubles = {1, 2, 3};
    SolverGame::zeroArray(2, doubles.data());
    EXPECT_EQ(doubles, (std::vector<double>{0, 0, 3}));
    SolverGame::zeroArray(-1, doubles.data());
    EXPECT_EQ(doubles[2], 3.0);
    SolverGame::zeroArray(2, static_cast<float*>(nullptr));
}

TEST(SolverGameDeathTest, RefinementOtherThanOneStopsTheProcess) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const std::string place = ": SparseMatrixLib/SolverGame.cpp:[0-9]+: SolverGame: Assertion `";
    EXPECT_DEATH(SolverGame(1, 1, 2, 3, {}, {}, 1), place + "ndopt == 1' failed");
    EXPECT_DEATH(SolverGame(1, 1, 1, 0, {}, {}, 1), place + "ndvis == 1' failed");
}

}  // namespace
