#include <gtest/gtest.h>

#include <string>

#include "support/answers.h"
#include "support/matrices.h"
#include "support/solver_app_inspector.h"

namespace {

using test::listOf;
using App = SolverAppInspector;

TEST(AppConstructionTest, StartsWithAUniformDesignAndResetRestoresIt) {
    App app(4, 3, 2, 3, 0.3F, 2);
    EXPECT_EQ(app.equilibrium.numLoadCases(), 2);
    EXPECT_TRUE(test::isUnset(app.rhoOld));
    EXPECT_TRUE(test::isUnset(app.dc));
    const auto expectUniform = [&app] {
        EXPECT_EQ(listOf(app.rho), std::vector<double>(48, 0.3F));
        EXPECT_EQ(listOf(app.rhoPhys), std::vector<double>(48, 0.3F));
    };
    expectUniform();
    app.rho.fill(0.5);
    app.rhoPhys.fill(0.7);
    app.iteration = 5;
    app.reset();
    expectUniform();
    EXPECT_EQ(app.iteration, 5);
}

TEST(AppConstructionTest, RestartCountsFromZeroAndKeepsTheDesign) {
    App app(4, 3, 1, 1, 0.3F, 1);
    app.rho.fill(0.5);
    app.iteration = 5;
    app.restartIteration();
    EXPECT_EQ(app.iteration, 0);
    EXPECT_EQ(listOf(app.rho), std::vector<double>(12, 0.5));
}

TEST(AppConstructionTest, PlatesWithoutCellsAreHarmless) {
    struct {
        unsigned nelx, nely, subdivision, meshFactor;
        int loadCases;
        std::string text;
    } const plates[] = {{0, 3, 1, 1, 1, test::UNSOLVABLE},
                        {3, 0, 1, 1, 1, test::UNSOLVABLE},
                        {3, 2, 0, 1, 1, test::UNSOLVABLE},
                        {3, 2, 1, 0, 1, ""},
                        {3, 2, 1, 1, -1, test::UNSOLVABLE}};
    for (const auto& t : plates) {
        SolverApp app(t.nelx, t.nely, t.subdivision, t.meshFactor, 0.5F, t.loadCases);
        const int width = static_cast<int>(t.nelx);
        const int height = static_cast<int>(t.nely);
        test::send(test::cantilever(width, height), app);
        for (int i = 0; i < 3; ++i) EXPECT_EQ(test::iterate(app), t.text) << width << height;
    }
}

TEST(AppHelpersTest, ClampLetsTheLowerBoundWinAndTakesPairsOfBoundsInTurn) {
    EXPECT_EQ(SolverApp::clamp(0.5, 0, 1), 0.5);
    EXPECT_EQ(SolverApp::clamp(2, 0, 1), 1.0);
    EXPECT_EQ(SolverApp::clamp(-2, 0, 1), 0.0);
    EXPECT_EQ(SolverApp::clamp(2, 3, 1), 3.0);
    EXPECT_EQ(SolverApp::clamp(9, 0, 2, 7, 5), 5.0);
    EXPECT_EQ(SolverApp::clamp(-9, 0, 2, 7, 5), 2.0);
    EXPECT_EQ(SolverApp::clamp(4, 0, 2, 7, 5), 4.0);
    EXPECT_EQ(SolverApp::clamp(6, 0, 2, 3, 5), 3.0);
}

TEST(AppHelpersTest, MaxDeltaIsTheLargestDifferenceEitherWay) {
    const kmat::DenseMatrix a(3, 1, 1.0);
    kmat::DenseMatrix b(1, 3, 0.5);  // only the number of entries must agree
    EXPECT_EQ(SolverApp::maxDelta(a, b), 0.5);
    b(0, 1) = 3.0;
    EXPECT_EQ(SolverApp::maxDelta(a, b), 2.0);
    EXPECT_EQ(SolverApp::maxDelta(b, a), 2.0);
    EXPECT_EQ(SolverApp::maxDelta(kmat::DenseMatrix(nullptr), kmat::DenseMatrix(nullptr)), 0.0);
}

TEST(AppHelpersDeathTest, MaxDeltaStopsTheProcessWhenTheSizesDiffer) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(SolverApp::maxDelta(kmat::DenseMatrix(3, 1), kmat::DenseMatrix(2, 1)),
                 ": SparseMatrixLib/SolverApp[^:]*:843: maxDelta: Assertion `size == "
                 "b\\.getRows\\(\\) \\* b\\.getColumns\\(\\)' failed");
}

}  // namespace
