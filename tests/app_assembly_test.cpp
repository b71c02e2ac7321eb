#include <gtest/gtest.h>

#include <memory>

#ifdef VOXAM_PARALLEL_TBB
#include <tbb/global_control.h>
#endif

#include "support/matrices.h"
#include "support/solver_app_inspector.h"

namespace {

using test::distance;
using test::Matrix;
using App = SolverAppInspector;

Matrix stiffnessOf(const App& app) { return test::valuesOf(app.equilibrium.K); }

// A plate of 4 x 3 elements with random densities.
class AppAssemblyTest : public testing::TestWithParam<unsigned> {
protected:
    const unsigned n = GetParam();
    test::Random random;
    App app{4, 3, n, n, 0.5F, 1};
    double penalty = 3.0;

    void assemble(double exponent) {
        penalty = exponent;
        app.setPenalty(penalty);
        test::fillRandom(app.rhoPhys, random, 0.0, 1.0);
        app.assemble();
    }

    // `floorOf` gives the least modulus of a fine cell.
    template <typename FloorOf>
    Matrix textbook(const FloorOf& floorOf) const {
        return test::plateStiffness(4, 3, n, [&](unsigned e) {
            return floorOf(e) + std::pow(app.rhoPhys(e, 0), penalty) * (1 - floorOf(e));
        });
    }
};

INSTANTIATE_TEST_SUITE_P(Subdivisions, AppAssemblyTest, testing::Values(1, 2, 3));

TEST_P(AppAssemblyTest, TheFirstBuildAndRefillsMatchTheTextbook) {
    const auto floor = [this](unsigned) { return app.Emin; };
    for (const double exponent : {3.0, 1.0, 2.5, 2.5}) {
        assemble(exponent);
        EXPECT_LT(distance(stiffnessOf(app), textbook(floor)), 1e-14);
        const Matrix first = stiffnessOf(app);
        app.assemble();
        EXPECT_LT(distance(stiffnessOf(app), first), 1e-15);
    }
}

TEST_P(AppAssemblyTest, PassiveVoidCellsHaveALowerFloor) {
    test::Settings settings = test::cantilever(4, 3);
    settings.passive = {2, 1, 1, 1, 0, 3, 2, 3, 2, 0, 1};  // (3, 2) is void and solid
    test::send(settings, app);
    for (int build = 0; build < 2; ++build) {
        assemble(3.0);
        const auto floor = [this](unsigned e) {
            const int cell = app.getCoarseGridIndex(static_cast<int>(e));
            return cell == 3 || cell == 11 ? 1e-9 : app.Emin;
        };
        EXPECT_LT(distance(stiffnessOf(app), textbook(floor)), 1e-14);
    }
}

TEST(AppAssemblyFloorTest, OfPassiveVoidIsSinglePrecisionAtFirst) {
    App app(1, 1, 1, 1, 0.5F, 1);
    test::Settings settings = test::cantilever(1, 1);
    settings.passive = {1, 0, 0, 0, 0};
    test::send(settings, app);
    app.rhoPhys.fill(0.0);
    for (const double floor : {9.999999717180685e-10, 1e-9}) {
        app.assemble();
        EXPECT_DOUBLE_EQ(app.equilibrium.K.getValue(0, 0),
                         test::exactElementMatrix()(0, 0) * floor);
    }
}

TEST(AppAssemblyThreadsTest, OneTaskAtATimeGivesTheSameBitsAsMany) {
    test::Random random;
    App app(61, 9, 2, 2, 0.5F, 1);
    app.assemble();
    const auto valuesAfterRefill = [&app] {
        app.assemble();
        kmat::SparseMatrix& K = app.equilibrium.K;
        return std::vector(K.getValues(), K.getValues() + K.getNumberOfElements());
    };
    for (int round = 0; round < 5; ++round) {
        test::fillRandom(app.rhoPhys, random, 0.0, 1.0);
#ifdef VOXAM_PARALLEL_TBB
        using Control = tbb::global_control;
        auto limit = std::make_unique<Control>(Control::max_allowed_parallelism, 1);
        const auto expected = valuesAfterRefill();
        limit.reset();
#else
        const auto expected = valuesAfterRefill();
#endif
        for (int i = 0; i < 5; ++i) EXPECT_EQ(valuesAfterRefill(), expected);
    }
}

}  // namespace
