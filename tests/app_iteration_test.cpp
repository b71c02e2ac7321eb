// What a series of iterations does beyond what whole runs show: the continuation to the last bit
// and to its end, the density filter, counters, and sensitivities that are no numbers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/answers.h"
#include "support/matrices.h"
#include "support/solver_app_inspector.h"

namespace {

using test::distance;
using test::Matrix;
using test::Settings;
using App = SolverAppInspector;

constexpr double FLOOR_AT_START = 0.009999999776482582;
constexpr double LEAST_FLOOR = 1.0000000116860974e-07;

TEST(AppContinuationTest, StiffnessFloorFallsEverySeventhIterationUnlessTheSettingsAreNew) {
    App app(2, 2, 1, 1, 0.5F, 1);
    test::send(test::cantilever(2, 2), app);
    double expected = FLOOR_AT_START;
    for (int i = 1; i <= 70; ++i) {
        test::iterate(app);
        if (i % 7 == 0) expected = std::max(LEAST_FLOOR, expected / 4);
        EXPECT_EQ(app.Emin, expected) << i;
    }
    EXPECT_EQ(expected, LEAST_FLOOR);
    for (int i = 71; i <= 76; ++i) test::iterate(app);
    test::send(test::cantilever(2, 2), app);
    test::iterate(app);
    EXPECT_EQ(app.iteration, 77);
    EXPECT_EQ(app.Emin, FLOOR_AT_START);
}

TEST(AppContinuationTest, VolumeFollowsItsTargetByFivePercentAndIsMet) {
    App app(8, 5, 1, 1, 0.3F, 1);
    Settings settings = test::cantilever(8, 5);
    double expected = 0.3F;
    for (const float target : {0.5F, 0.31F, 0.3F}) {
        settings.volumeFraction = target;
        test::send(settings, app);
        for (int i = 0; i < 15; ++i) {
            expected = std::clamp<double>(target, expected * 0.949999988079071,
                                          expected * 1.0499999523162842);
            EXPECT_EQ(test::iterate(app), "");
            EXPECT_EQ(app.volumeFraction, expected);
            EXPECT_NEAR(App::sum(app.rhoPhys) / 40, expected, 1e-3 * expected);
        }
        EXPECT_EQ(expected, target);
    }
}

TEST(AppContinuationTest, AVolumeThatIsNoNumberLetsTheDesignShrink) {
    App app(3, 2, 1, 1, 0.5F, 1);
    Settings settings = test::cantilever(3, 2);
    settings.volumeFraction = NAN;
    test::send(settings, app);
    test::iterate(app);
    EXPECT_EQ(app.volumeFraction, 0.5 * 0.949999988079071);
}

// 48 fine cells on 12 elements, one of which the blob covers.
class AppDensityFilterTest : public testing::Test {
protected:
    test::Random random;
    App app{4, 3, 2, 2, 0.5F, 1};

    AppDensityFilterTest() {
        Settings settings = test::cantilever(4, 3);
        settings.blob = {1, 2, 1};
        test::send(settings, app);
        for (auto* field : {&app.rho, &app.dc, &app.dv}) {
            test::fillRandom(*field, random, 0.1, 0.9);
        }
        app.useDensityFilter = 1;
    }

    // H x / Hs by the textbook, with a normaliser that the first 12 cells share.
    static Matrix filtered(const kmat::DenseMatrix& x) {
        const Matrix weights = test::coneWeights(8, 6, 3.0);
        Matrix sums = test::rowSums(weights);
        const auto end = sums.values.begin() + 12;
        std::fill(sums.values.begin(), end, *std::max_element(sums.values.begin(), end));
        Matrix result = product(weights, Matrix(x));
        for (unsigned i = 0; i < 48; ++i) result(i, 0) /= sums(i, 0);
        return result;
    }
};

TEST_F(AppDensityFilterTest, FiltersBothSensitivitiesButNotTheBlobs) {
    const Matrix dc = filtered(app.dc);
    const Matrix dv = filtered(app.dv);
    app.filterSensitivities();
    EXPECT_LT(distance(Matrix(app.dc), dc), 1e-14);
    EXPECT_LT(distance(Matrix(app.dv), dv), 1e-14);
    test::fillRandom(app.blob.blobSensitivity, random, 0.0, 1.0);
    const Matrix given(app.blob.blobSensitivity);
    app.filterBlobSensitivities();
    EXPECT_EQ(Matrix(app.blob.blobSensitivity), given);
}

TEST_F(AppDensityFilterTest, MakesThePhysicalDensitiesAndCutsOutNoBlob) {
    app.updatePhysicalDensities();
    EXPECT_LT(distance(Matrix(app.rhoPhys), filtered(app.rho)), 1e-14);
    EXPECT_EQ(test::iterate(app), "");
}

class AppBlobStepTest : public testing::Test {
protected:
    App app{6, 4, 1, 1, 0.5F, 1};
    Settings settings = test::cantilever(6, 4);

    AppBlobStepTest() {
        settings.blob = {4, 2, 1, 3, 1, 2, 2, 3, 2};
        test::send(settings, app);
    }

    // Returns the compliance.
    double step() {
        char text[64];
        double change = 0.0;
        return app.runIterationWithBlob(sizeof text, text, nullptr, change, nullptr, nullptr);
    }
};

TEST_F(AppBlobStepTest, CellsOutsideTheGridAreNone) {
    std::vector<int> mask(24);
    std::vector<int> expected(24);
    expected[7] = 1;
    settings.blob = {6, 0, 4, 6, 0, -1, 1, 0, -1, 1, 1, 32767, 32767};
    test::send(settings, app);
    app.blob.createAndPublishBlobResult(mask.data());
    EXPECT_EQ(mask, expected);
    settings.blob = {-1, 1, 1};
    test::send(settings, app);
    app.blob.createAndPublishBlobResult(mask.data());
    EXPECT_EQ(mask, std::vector<int>(24));
}

TEST_F(AppBlobStepTest, TheMoveLimitFollowsFromTheThirdStepOn) {
    for (int i = 0; i < 2; ++i) step();
    EXPECT_EQ(app.blob.objectivePrevious, 1e10);
    const double third = step();
    EXPECT_EQ(app.blob.objectivePrevious, third);
    EXPECT_EQ(app.blob.objectivePrevious2, 1e10);
}

// Whatever the sensitivities are, the search ends and the design stays within its limits.
TEST(AppDesignTest, StaysInBoundsWithSensitivitiesThatAreNoNumbers) {
    for (const double value : {0.0, -1e300, static_cast<double>(-INFINITY), std::nan("")}) {
        for (const bool withPassiveCells : {false, true}) {
            App app(6, 4, 1, 1, 0.5F, 1);
            Settings settings = test::cantilever(6, 4);
            if (withPassiveCells) settings.passive = {1, 0, 0, 2, 2};
            test::send(settings, app);
            EXPECT_EQ(test::iterate(app), "");
            app.dc.fill(value);
            app.optimalityCriteriaUpdateOfRHO();
            for (const double v : app.rho) EXPECT_TRUE(v >= 0.0 && v <= 1.0) << v;
        }
    }
}

}  // namespace
