#include <gtest/gtest.h>

#include <memory>

#ifdef VOXAM_PARALLEL_TBB
#include <tbb/global_control.h>
#endif

#include "support/matrices.h"
#include "support/solver_app_inspector.h"

namespace {

using test::Matrix;
using App = SolverAppInspector;

class AppAssemblyTest : public testing::TestWithParam<unsigned> {};

INSTANTIATE_TEST_SUITE_P(Subdivisions, AppAssemblyTest, testing::Values(1, 2, 3));

// Of random densities, with two passive void cells, whose floor is lower.
TEST_P(AppAssemblyTest, TheFirstBuildAndRefillsMatchTheTextbook) {
    const unsigned n = GetParam();
    App app(4, 3, n, n, 0.5F, 1);
    test::Settings settings = test::cantilever(4, 3);
    settings.passive = {2, 1, 1, 1, 0, 3, 2, 3, 2, 0, 1};  // (3, 2) is void and solid
    test::send(settings, app);
    test::Random random;
    for (const double penalty : {3.0, 1.0, 2.5}) {
        app.setPenalty(penalty);
        test::fillRandom(app.rhoPhys, random, 0.0, 1.0);
        const Matrix expected = test::plateStiffness(4, 3, n, [&](unsigned e) {
            const int cell = app.getCoarseGridIndex(static_cast<int>(e));
            const double floor = cell == 3 || cell == 11 ? 1e-9 : app.Emin;
            return floor + std::pow(app.rhoPhys(e, 0), penalty) * (1 - floor);
        });
        for (int build = 0; build < 2; ++build) {
            app.assemble();
            EXPECT_LT(distance(test::valuesOf(app.equilibrium.K), expected), 1e-14);
        }
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
