// State solve, compliance, sensitivities, and the verdict on loads and supports.
#include <gtest/gtest.h>

#include "kmat_exception.h"
#include "support/answers.h"
#include "support/matrices.h"
#include "support/solver_app_inspector.h"

namespace {

using test::Matrix;
using test::Settings;
using App = SolverAppInspector;

TEST(AppStateTest, SupportsReplaceTheDiagonalAndDirectionsAreRounded) {
    App app(3, 2, 1, 1, 0.5F, 1);
    Settings settings = test::cantilever(3, 2);
    settings.supports.add(2, 0, 0.6F).add(2, 2, -0.4F);  // y of node 6, x of node 8
    test::send(settings, app);
    ASSERT_TRUE(app.solveStateCHOL());
    for (const unsigned d : {0U, 1U, 2U, 3U, 4U, 5U, 13U, 16U}) {
        EXPECT_EQ(app.equilibrium.K.getValue(d, d), 1e8) << d;
    }
    for (const unsigned d : {12U, 17U}) EXPECT_LT(app.equilibrium.K.getValue(d, d), 10) << d;
}

TEST(AppStateTest, FailedSolvesKeepTheDisplacementsAndLeaveNoException) {
    App app(3, 2, 1, 1, 0.5F, 1);
    const Settings good = test::cantilever(3, 2);
    test::send(good, app);
    ASSERT_TRUE(app.solveStateCHOL());
    const Matrix before(app.equilibrium.U[0]);
    Settings bad = good;
    bad.supports.add(4, 1, 0);
    test::send(bad, app);
    EXPECT_FALSE(app.solveStateCHOL());
    EXPECT_EQ(Matrix(app.equilibrium.U[0]), before);
    test::send(good, app);
    app.Emin = -1.0;  // not positive definite
    EXPECT_FALSE(app.solveStateCHOL());
    EXPECT_EQ(Matrix(app.equilibrium.U[0]), before);
    EXPECT_EQ(kmat::KmatException::getLastException(), nullptr);
}

class AppSensitivityTest : public testing::TestWithParam<unsigned> {};

INSTANTIATE_TEST_SUITE_P(Subdivisions, AppSensitivityTest, testing::Values(1, 2, 3));

// Two load cases in use, random densities, by central differences.
TEST_P(AppSensitivityTest, IsTheDerivativeOfTheCompliance) {
    const unsigned n = GetParam();
    App app(3, 2, n, n, 0.4F, 2);
    Settings settings = test::cantilever(3, 2);
    settings.loads.add(2, 0, 0.3F, -0.5F, 1);
    settings.loadCases = {0, 1};
    test::send(settings, app);
    app.setPenalty(2.5);
    test::Random random;
    test::fillRandom(app.rhoPhys, random, 0.3, 1.0);
    const auto complianceWith = [&app](unsigned e, double step) {
        app.rhoPhys(e, 0) += step;
        EXPECT_TRUE(app.solveStateCHOL());
        app.setObjectivePlusSens();
        app.rhoPhys(e, 0) -= step;
        return app.objective;
    };
    constexpr double h = 1e-5;
    for (unsigned e = 0; e < 6 * n * n; ++e) {
        const double derivative = (complianceWith(e, h) - complianceWith(e, -h)) / (2 * h);
        complianceWith(e, 0.0);
        EXPECT_NEAR(app.dc(e, 0), derivative, 1e-6 * std::fabs(derivative)) << e;
    }
}

using test::NO_WORK, test::NOT_HELD;

struct Verdict {
    const char* what;
    double compliance;
    double displacement;
    std::string text;
};

TEST(AppVerificationTest, TellsWhatIsWrong) {
    const Verdict cases[] = {{"a sensible plate", 1.0, 1.0, ""},
                             {"a compliance at the limit", 0.9e15, 1.0, ""},
                             {"a compliance beyond", 1.1e15, 1.0, NOT_HELD},
                             {"displacements at the limit", 1e14, 3.1e7, ""},
                             {"displacements beyond", 1e14, 3.2e7, NOT_HELD},
                             {"their ratio at the limit", 1e-6, 3.1e4, ""},
                             {"their ratio beyond", 1e-6, 3.2e4, NOT_HELD},
                             {"a little work", 1.1e-10, 0.0, ""},
                             {"hardly any work", 0.9e-10, 0.0, NO_WORK},
                             {"no work", 0.0, 0.0, NO_WORK},
                             {"no work, but it moves", 1e-12, 1e3, NOT_HELD},
                             {"a compliance that is no number", NAN, 1.0, ""}};
    for (const Verdict& t : cases) {
        SCOPED_TRACE(t.what);
        App app(1, 1, 1, 1, 0.5F, 2);
        test::send(test::cantilever(1, 1), app);
        app.objective = t.compliance;
        app.equilibrium.U[0].fill(0.0);
        app.equilibrium.U[0](0, 0) = t.displacement;
        app.equilibrium.U[1].fill(1e9);  // not in use
        EXPECT_EQ(app.verifyValidLoadAndSupports(), t.text.empty());
        char text[40];
        app.createAndPublishResult(nullptr, sizeof text, text, nullptr);
        EXPECT_STREQ(text, t.text.c_str());
    }
}

}  // namespace
