// Design update, iteration, settings and blob of the optimiser.
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "app_support.h"

namespace {

using kmat::DenseMatrix;
using test::Matrix;
using test::Settings;
using App = SolverAppInspector;

constexpr double MOVE = 0.20000000298023224;
const double INF = std::numeric_limits<double>::infinity();

// The record of a square blob.
std::vector<short> square(int x, int y, int size) {
    std::vector<short> cells = {static_cast<short>(size * size)};
    for (int i = 0; i < size * size; ++i) {
        cells.push_back(static_cast<short>(x + i / size));
        cells.push_back(static_cast<short>(y + i % size));
    }
    return cells;
}

std::vector<double> listOf(const DenseMatrix& m) { return {m.begin(), m.end()}; }

// A plate in mid-run, with random sensitivities. One cell belongs to the blob.
struct MidRun : App {
    Matrix before{24, 1};  // the design

    explicit MidRun(bool withPassiveCells) : App(6, 4, 1, 1, 0.5F, 1) {
        test::Random random;
        Settings settings = test::cantilever(6, 4);
        settings.blob = {1, 3, 2};
        if (withPassiveCells)
            settings.passive = {3, 2, 2, 0, 0, 1, 1, 2, 2, 4, 1, 2, 2, 5, 3, 0, 3};
        test::send(settings, *this);
        test::fillRandom(rho, random, 0.1, 0.9);
        test::fillRandom(dc, random, -60.0, -0.5);
        test::fillRandom(dv, random, 0.05, 0.1);
        constraint = 0.03;
        before = Matrix(rho);
    }
    // What the update makes of cell e, and the linearised volume constraint.
    double updated(unsigned e, double multiplier) const {
        const int kind = passiveBlock.getCoarseGridElement(static_cast<int>(e));
        if (kind == 1) return 0.0;
        if (kind == 2 || kind == 4) return 1.0;
        const double x = before(e, 0);
        const double wanted = x * std::sqrt(-dc(e, 0) / multiplier / dv(e, 0));
        return std::clamp(wanted, std::max(x - MOVE, Emin), std::min(x + MOVE, 1.0));
    }
    double excess(double multiplier) const {
        double sum = constraint;
        for (unsigned e = 0; e < grids.numberOfElements; ++e) {
            if (!passiveBlock.IsEmpty() && blobMask(e, 0) == 1.0) continue;
            sum += (updated(e, multiplier) - before(e, 0)) * dv(e, 0);
        }
        return sum;
    }
    double root() const {
        double low = 1e-12;
        double high = 1e12;
        for (int i = 0; i < 200; ++i) {
            const double middle = std::sqrt(low * high);
            (excess(middle) > 0.0 ? low : high) = middle;
        }
        return low;
    }
};

// Whether halving the interval stopped at `value` no earlier and no later than the tolerance asks.
bool resolvedTo(double tolerance, double value, double low, double high) {
    double step = high - low;
    while (std::fmod(value - low, step) != 0.0) step /= 2.0;
    return step / value > tolerance && step / (2.0 * value + step) <= tolerance;
}

TEST(AppUpdateTest, MultiplierIsTheRootOfTheLinearisedConstraintFromAnyStart) {
    constexpr double root = 801.0;
    struct Start {
        int iteration;
        double lambda, lambdaPrevious, low, high;  // the bracket, where it holds the root
    };
    const Start starts[] = {
        {0, 7, 7, 0, 10000},   {1, 7, 7, 0, 10000},       {2, 2048, 7, 0, 4096},
        {2, 16, 7, 0, 0},      {3, 1000, 700, 700, 1300}, {4, 800, 800, 796, 804},
        {5, 400, 801, 0, 0},   {9, 2400, 2400, 0, 0},     {6, 2000, 900, 0, 0},
        {5, 1e-6, 1e-6, 0, 0}, {5, 5e3, 1e4, 0, 0},       {8, 0, 0, 0, 0}};
    for (const bool withPassiveCells : {false, true}) {
        const double tolerance = withPassiveCells ? 1e-9 : 0.0010000000474974513;
        const double scale = root / MidRun(withPassiveCells).root();
        for (const auto& [iteration, lambda, lambdaPrevious, low, high] : starts) {
            SCOPED_TRACE(testing::Message() << iteration << " " << lambda);
            MidRun app(withPassiveCells);
            app.dc *= scale;
            app.iteration = iteration;
            app.lambda = lambda;
            app.lambdaPrevious = lambdaPrevious;
            app.optimalityCriteriaUpdateOfRHO();
            app.updatePhysicalDensities();
            EXPECT_NEAR(app.lambda, root, 2.1 * tolerance * root);
            EXPECT_TRUE(high == 0.0 || resolvedTo(tolerance, app.lambda, low, high));
            EXPECT_EQ(app.lambdaPrevious, lambda);
            for (unsigned e = 0; e < 24; ++e) {
                EXPECT_NEAR(app.rho(e, 0), app.updated(e, app.lambda), 1e-15) << e;
                if (!withPassiveCells) continue;
                EXPECT_EQ(app.rhoPhys(e, 0), app.blobMask(e, 0) == 1.0 ? 0.0 : app.rho(e, 0));
            }
            for (const auto& [cell, value] : {std::pair{0U, 0.0}, {17U, 1.0}, {23U, 1.0}}) {
                EXPECT_EQ(app.rho(cell, 0) == value, withPassiveCells);  // exactly, at once
            }
        }
    }
}

TEST(AppUpdateTest, StartsAnewWithoutAPositiveMultiplierAndAlwaysEnds) {
    for (const bool withPassiveCells : {false, true}) {
        MidRun first(withPassiveCells);
        first.iteration = 1;
        first.optimalityCriteriaUpdateOfRHO();
        for (const double lambda : {0.0, std::nan("")}) {
            MidRun app(withPassiveCells);
            app.iteration = 2;
            app.lambda = lambda;
            app.optimalityCriteriaUpdateOfRHO();
            EXPECT_EQ(app.lambda, first.lambda);
            EXPECT_EQ(listOf(app.rho), listOf(first.rho));
        }
        using Change = std::function<void(MidRun&)>;
        for (const Change& change : std::initializer_list<Change>{
                 [](MidRun& app) { app.constraint = 10.0; }, [](MidRun& app) { app.dc.fill(0.0); },
                 [](MidRun& app) { app.dc.fill(-INF); }, [](MidRun& app) { app.dc.fill(-1e300); },
                 [](MidRun& app) { app.constraint = NAN; }, [](MidRun& app) { app.dv.fill(INF); },
                 [](MidRun& app) { app.dc.fill(NAN); }, [](MidRun& app) { app.dc(7, 0) = 0.0; },
                 [](MidRun& app) { app.constraint = -10.0; }}) {
            for (const double lambda : {0.0, 1.0, 1e300, INF, std::nan("")}) {
                for (const int iteration : {1, 2, 3}) {
                    // A multiplier that is not finite can only come before the second iteration.
                    if (iteration >= 2 && !std::isfinite(lambda)) continue;
                    MidRun app(withPassiveCells);
                    change(app);
                    app.iteration = iteration;
                    app.lambda = lambda;
                    app.optimalityCriteriaUpdateOfRHO();
                    for (const double v : app.rho) EXPECT_TRUE(v >= 0.0 && v <= 1.0) << v;
                }
            }
        }
    }
}

TEST(AppUpdateTest, ThickBlobsAndFreedVoidCellsDoNotHangOrStick) {
    App app(20, 12, 1, 1, 0.5F, 1);
    Settings settings = test::cantilever(20, 12);
    settings.blob = square(5, 2, 9);
    for (const short voidCells : {0, 1, 0}) {
        const double before = app.rho(13, 0);
        settings.passive = {voidCells, 0, 0, 1, 1};
        test::send(settings, app);
        EXPECT_EQ(test::iterate(app), "");
        EXPECT_EQ(app.rho(13, 0) == 0.0, voidCells == 1);
        EXPECT_TRUE(before > 0.0 || app.rho(13, 0) == MOVE);  // set free
        for (int i = 0; i < 3; ++i) EXPECT_EQ(test::iterate(app), "");
        for (const double v : app.rho) EXPECT_TRUE(v >= 0.0 && v <= 1.0);
    }
}

TEST(AppIterationTest, StiffnessFloorStartsHighAndFallsEverySeventhIteration) {
    App app(2, 2, 1, 1, 0.5F, 1);
    for (int round = 0; round < 2; ++round) {
        test::send(test::cantilever(2, 2), app);
        if (round == 1) app.iteration = 6;  // the change takes precedence over the seventh
        double expected = 0.009999999776482582;
        for (int i = 1; i <= 70; ++i) {
            test::iterate(app);
            if (i > 1 && app.iteration % 7 == 0) {
                expected = std::max(1.0000000116860974e-07, expected / 4);
            }
            EXPECT_EQ(app.Emin, expected) << i;
            EXPECT_EQ(app.loop, i);
        }
        EXPECT_EQ(expected, 1.0000000116860974e-07);
    }
}

TEST(AppIterationTest, VolumeFollowsItsTargetByFivePercentAndIsMet) {
    App app(8, 5, 1, 1, 0.3F, 1);
    Settings settings = test::cantilever(8, 5);
    double expected = 0.3F;
    for (const float target : {0.5F, 0.31F, 0.3F}) {
        settings.volumeFraction = target;
        test::send(settings, app);
        for (int i = 0; i < 15; ++i) {
            const double lo = expected * 0.949999988079071;
            const double hi = expected * 1.0499999523162842;
            expected = std::clamp<double>(target, lo, hi);
            EXPECT_EQ(test::iterate(app), "");
            EXPECT_EQ(app.volumeFraction, expected);
            EXPECT_NEAR(App::sum(app.rhoPhys) / 40, expected, 1e-3 * expected);
            EXPECT_NEAR(app.constraint, App::sum(app.rhoPhys) / 40 / expected - 1, 1e-12);
        }
        EXPECT_EQ(expected, target);
        EXPECT_EQ(app.blob.blobIteration, 16);
    }
    settings.volumeFraction = NAN;
    test::send(settings, app);
    test::iterate(app);
    EXPECT_EQ(app.volumeFraction, expected * 0.949999988079071);
}

// H x, element by element divided by Hs.
Matrix filtered(const kmat::SparseMatrix& H, const Matrix& x, const DenseMatrix& Hs) {
    Matrix result = product(Matrix(H.toDense()), x);
    for (unsigned i = 0; i < result.rows; ++i) result(i, 0) /= Hs(i, 0);
    return result;
}

// The filter of the product of x with a weight, which is then divided by again.
Matrix filtered(const kmat::SparseMatrix& H, Matrix x, const DenseMatrix& Hs,
                const Matrix& weight) {
    for (unsigned i = 0; i < x.rows; ++i) x(i, 0) *= weight(i, 0);
    x = filtered(H, x, Hs);
    for (unsigned i = 0; i < x.rows; ++i) x(i, 0) /= weight(i, 0);
    return x;
}

TEST(AppIterationTest, FiltersTheSensitivitiesOrTheDensities) {
    test::Random random;
    for (const bool densities : {false, true}) {
        App app(4, 3, 2, 2, 0.5F, 1);
        Settings settings = test::cantilever(4, 3);
        settings.blob = {1, 2, 1};
        test::send(settings, app);
        app.useDensityFilter = densities;
        for (auto* m : {&app.rho, &app.dc, &app.dv, &app.blobSensitivity}) {
            test::fillRandom(*m, random, 0.1, 0.9);
        }
        const Matrix rho(app.rho);
        const Matrix dc(app.dc);
        const Matrix dv(app.dv);
        const Matrix blob(app.blobSensitivity);
        Matrix complement(DenseMatrix(12, 1, 1.0));
        complement(7, 0) = 0.001;  // never 0
        app.filterSensitivities();
        app.filterBlobSensitivities();
        EXPECT_LT(distance(Matrix(app.dc),
                           densities ? filtered(app.H.weights, dc, app.H.normaliser)
                                     : filtered(app.H.weights, dc, app.H.normaliser, rho)),
                  1e-13);
        EXPECT_LT(distance(Matrix(app.dv),
                           densities ? filtered(app.H.weights, dv, app.H.normaliser) : dv),
                  1e-13);
        EXPECT_LT(distance(Matrix(app.blobSensitivity),
                           densities ? blob
                                     : filtered(app.blob.Hcoarse.weights, blob,
                                                app.blob.Hcoarse.normaliser, complement)),
                  1e-11);

        for (app.useHeaviside = true; app.iteration < 2; app.useHeaviside = false) {
            EXPECT_EQ(test::iterate(app), "");
            Matrix physical = filtered(app.H.weights, Matrix(app.rho),
                                       app.H.normaliser);  // the blob is not masked
            for (int e = 0; !densities && e < 48; ++e) {
                const double v = app.rho.begin()[e];
                physical.values[e] = app.getCoarseGridIndex(e) == 7 ? 0.0 : v;
            }
            EXPECT_LT(distance(Matrix(app.rhoPhys), physical), 1e-14);
            Matrix shown = filtered(app.meshH.weights, Matrix(app.meshRho), app.meshH.normaliser);
            for (unsigned i = 0; i < 192; ++i) {
                EXPECT_EQ(app.meshRho(i, 0), app.rhoPhys(i / 24 * 6 + i % 12 / 2, 0));
                double& v = shown(i, 0);
                if (app.useHeaviside) v = 0.5 + std::tanh(6 * v - 3) / (2 * std::tanh(3.0));
            }
            EXPECT_LT(distance(Matrix(app.meshRhoFiltered), shown), 1e-12);
        }
        for (const double v : {0.0, 0.5, 1.0}) {
            app.meshRhoFiltered.fill(v);
            app.projectHeaviside();
            EXPECT_EQ(app.meshRhoFiltered(191, 0), v);
        }
    }
}

TEST(AppIterationTest, ReplicatesFieldsMeasuresChangeAndClamps) {
    const double source[] = {1, 2, 3, 4, 5, 6};
    std::vector<double> target(25, -1);
    App::map2Mesh(source, 2, 3, 2, target.data());
    EXPECT_EQ(target, (std::vector<double>{1, 1, 2, 2, 3, 3, 1, 1, 2, 2, 3, 3,  //
                                           4, 4, 5, 5, 6, 6, 4, 4, 5, 5, 6, 6, -1}));
    for (const int none : {0, -1}) {
        App::map2Mesh(source, none, 3, 2, nullptr);
        App::map2Mesh(source, 2, none, 2, nullptr);
        App::map2Mesh(source, 2, 3, none, nullptr);
    }
    EXPECT_EQ(App::clamp(0.5, 0, 1), 0.5);
    EXPECT_EQ(App::clamp(2, 0, 1), 1.0);
    EXPECT_EQ(App::clamp(2, 3, 1), 3.0);  // the lower bound wins
    EXPECT_EQ(App::clamp(9, 0, 2, 7, 5), 5.0);
    EXPECT_EQ(App::clamp(-9, 0, 2, 7, 5), 2.0);

    const DenseMatrix a(3, 1, 1.0);
    DenseMatrix b(1, 3, 0.5);
    b(0, 1) = 3.0;
    EXPECT_EQ(App::maxDelta(a, b), 2.0);
    EXPECT_EQ(App::maxDelta(b, a), 2.0);
    EXPECT_EQ(App::maxDelta(DenseMatrix(nullptr), DenseMatrix(nullptr)), 0.0);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(App::maxDelta(a, DenseMatrix(2, 1)),
                 ": SparseMatrixLib/SolverApp[^:]*:843: maxDelta: Assertion `size == "
                 "b\\.getRows\\(\\) \\* b\\.getColumns\\(\\)' failed");
}

TEST(AppBlobTest, SettingsPlaceTheBlobAndItsLimits) {
    struct Case {
        std::vector<short> blob;
        std::vector<unsigned> cells;
        int count, disc, limit;  // interface of the disc of that area, and a tenth of it, even
    };
    App app(11, 11, 1, 1, 0.5F, 1);
    Settings settings = test::cantilever(11, 11);
    // A disc of one cell has itself and 4 neighbours, one of 9 cells is a square.
    for (const Case& t :
         {Case{{0}, {}, 0, 0, 0}, Case{{-3}, {}, 0, 0, 0}, Case{{2, 4, 5, 11, 5}, {49}, 2, 5, 2},
          Case{square(4, 5, 3), {49, 50, 51, 60, 61, 62, 71, 72, 73}, 9, 20, 4},
          Case{{4, -1, 9, 0, 11, 9, -1, 10, 0}, {110}, 4, 12, 2}}) {
        settings.blob = t.blob;
        app.blob.blobStage = app.blob.blobConverged = 5;
        app.message = "old";
        test::send(settings, app);
        EXPECT_EQ(app.blob.blobCellCount, t.count);
        EXPECT_EQ(app.hasBlob, t.count > 0);
        EXPECT_NEAR(app.blob.circleRadiusSquared, t.count / 3.141592653589793, 1e-15 * t.count);
        EXPECT_NEAR(app.blob.circleMoI, t.count * t.count / 6.283185307179586, 1e-14 * t.count);
        EXPECT_EQ(app.blob.circleInterfaceSize, t.disc);
        for (const auto m :
             {&Blob::blobMoveLimit, &Blob::blobMoveLimitMax, &Blob::blobMoveLimitFraction})
            EXPECT_EQ(app.blob.*m, t.limit);
        EXPECT_EQ(app.blob.blobStage + app.blob.blobConverged, 0);
        EXPECT_EQ(app.blob.blobIteration, 1);
        EXPECT_EQ(app.blob.objectivePrevious + app.blob.objectivePrevious2, 2e10);
        EXPECT_EQ(app.message, "");
        std::vector<double> mask(121);
        for (const unsigned cell : t.cells) mask[cell] = 1.0;
        EXPECT_EQ(listOf(app.blobMask), mask);
        for (double& v : mask) v = (1 - v) * 0.5;
        EXPECT_EQ(listOf(app.rhoPhys), mask);
    }
}

TEST(AppBlobTest, InterfaceIsWhereTheSmoothedMaskIsNeitherZeroNorOne) {
    test::Random random;
    App app(7, 6, 1, 1, 0.5F, 1);
    test::send(test::cantilever(7, 6), app);
    const short passive[] = {2, 1, 2, 2, 1, 1, 1, 3, 3, 2, 1, 5, 2};  // (2, 1) is void and solid
    for (int round = 0; round < 30; ++round) {
        if (round == 15) app.passiveBlock.update(passive);
        Matrix mask(42, 1);
        for (double& v : mask.values) v = random.below(4) > 0;
        app.blobMask.set(mask.values.data());
        app.blob.circleMask.set(mask.values.data());
        Matrix scaled = mask;
        for (unsigned i = 0; i < 42; ++i) scaled(i, 0) /= app.blob.blobH.normaliser(i, 0);
        const Matrix smooth = product(Matrix(app.blob.blobH.weights.toDense()), scaled);
        app.findBlobInterface(0);
        app.findBlobInterface(1);
        for (unsigned i = 0; i < 42; ++i) {
            const bool between = smooth(i, 0) >= 0.0001 && smooth(i, 0) <= 0.9999;
            const bool fixed = round >= 15 && (i == 7 || i == 21 || i == 32);
            EXPECT_EQ(app.blob.circleInterface(i, 0), between) << i;
            EXPECT_EQ(app.blob.blobInterface(i, 0), between && !fixed) << i;
        }
        EXPECT_EQ(app.blob.blobInterfaceSize, App::sum(app.blob.blobInterface));
    }
}

TEST(AppBlobTest, MoveLimitFollowsTheCompliance) {
    struct Case {
        double limit, fraction, max, moved, c2, c1, c, newLimit, newFraction, newLarge;
    };
    constexpr double none = -1.0;
    // The compliance falls, rises or turns.
    const Case cases[] = {
        {8, 8, 20, 10, 3, 2, 1, 8, 8 * 1.03, none}, {8, 8.8, 20, 10, 1, 2, 3, 10, 8.8 * 1.03, none},
        {8, 7, 20, 10, 3, 1, 2, 6, 7 * 0.95, none}, {8, 8, 20, 10, 2, 2, 1, 8, 8 * 1.03, none},
        {8, 9.9, 10, 10, 3, 2, 1, 10, 10, none},    {8, 8, 20, 1, 3, 2, 1, 2, 2 * 1.03, none},
        {8, 8, 20, 0, 3, 2, 1, 0, 0, none},         {12, 5, 20, 10, 3, 2, 1, 14, 5, 12},
        {12, 5, 13, 10, 3, 2, 1, 13, 5, 12},        {12, 5, 12, 10, 3, 2, 1, 12, 5, 12},
        {12, 5, 20, 3, 3, 2, 1, 8, 5, 6},           {12, 5, 20, 0, 3, 2, 1, 0, 5, 0},
        {100, 5, 200, 99, 3, 2, 1, 102, 5, 100},    {100, 5, 102.5, 99, 3, 2, 1, 102, 5, 100},
        {50, 5, 200, 99, 3, 1, 2, 46, 5, 50}};
    for (const Case& t : cases) {
        App app(2, 2, 1, 1, 0.5F, 1);
        app.blob.blobMoveLimit = t.limit;
        app.blob.blobMoveLimitFraction = t.fraction;
        app.blob.blobMoveLimitMax = t.max;
        app.blob.blobMoveCount = t.moved;
        app.blob.blobMoveLimitLarge = none;
        app.blob.objectivePrevious2 = t.c2;
        app.blob.objectivePrevious = t.c1;
        app.objective = t.c;
        app.updateBlobMoveLimit();
        EXPECT_EQ(app.blob.blobMoveLimit, t.newLimit);
        EXPECT_DOUBLE_EQ(app.blob.blobMoveLimitFraction, t.newFraction);
        EXPECT_EQ(app.blob.blobMoveLimitLarge, t.newLarge);
        EXPECT_EQ(app.blob.objectivePrevious2, t.c1);
        EXPECT_EQ(app.blob.objectivePrevious, t.c);
    }
}

TEST(AppBlobTest, LeastUsefulElementsAreExchangedAndNotANumberComesLast) {
    using Cells = std::vector<unsigned>;
    App app(12, 1, 1, 1, 0.5F, 1);
    // 0 .. 4 lie inside, 5 .. 8 outside, the others are not candidates.
    double mask[] = {1, 1, 1, 1, 1, 0, 0, 0, 0, 1, 0, 0.5};
    double interface[] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 1};
    const double sensitivity[] = {NAN, 3, -1, 9, 2, 6, NAN, -7, 1, 99, -99, 0};
    const auto redistribute = [&](double limit) {
        app.blobMask.set(mask);
        app.blob.blobInterface.set(interface);
        app.blobSensitivity.set(sensitivity);
        app.blob.blobMoveLimit = limit;
        app.redistributeBlob();
        return std::pair{app.blob.blobLeaving, app.blob.blobJoining};
    };
    EXPECT_EQ(redistribute(0), (std::pair{Cells{3}, Cells{7}}));  // chosen, but not moved
    EXPECT_EQ(app.blob.blobConverged, 1);
    EXPECT_EQ(listOf(app.blobMask), std::vector(mask, mask + 12));
    EXPECT_EQ(redistribute(2), (std::pair{Cells{3}, Cells{7}}));
    EXPECT_EQ(app.blob.blobConverged, 0);
    EXPECT_EQ(app.blobMask(3, 0) - app.blobMask(7, 0), -1.0);
    EXPECT_EQ(redistribute(4), (std::pair{Cells{3, 1}, Cells{7, 8}}));
    EXPECT_EQ(redistribute(100), (std::pair{Cells{3, 1}, Cells{7, 8}}));  // half of the inside
    EXPECT_EQ(app.blob.blobMoveCount, 2.0);
    EXPECT_EQ(App::sum(app.blobMask), 6.5);

    std::fill_n(mask, 12, 1.0);
    mask[6] = 0.0;  // one candidate outside: the blob shrinks
    std::fill_n(interface, 12, 1.0);
    EXPECT_EQ(redistribute(100), (std::pair{Cells{9, 3, 5, 1, 4}, Cells{6}}));
    EXPECT_EQ(App::sum(app.blobMask), 7.0);
    std::fill_n(mask, 12, 0.0);
    EXPECT_EQ(redistribute(100), (std::pair{Cells{}, Cells{10}}));
    EXPECT_EQ(app.blob.blobConverged, 1);
}

TEST(AppBlobTest, RunsKeepTheSizeOfTheBlobAndPassiveCellsOutOfIt) {
    App app(14, 10, 1, 1, 0.5F, 1);
    Settings settings = test::cantilever(14, 10);
    settings.blob = square(5, 3, 4);
    settings.passive = {2, 1, 1, 4, 3, 4, 4, 9, 5, 7, 7};  // all of them touch the blob
    test::send(settings, app);
    std::vector<int> out(140);
    char text[64];
    double change = 0.0;
    const Matrix start(app.blobMask);
    for (int step = 1; step <= 25; ++step) {
        app.runIterationWithBlob(sizeof text, text, nullptr, change, nullptr, out.data());
        EXPECT_STREQ(text, "");
        EXPECT_TRUE(step == 1 || change <= 0.2001) << change;  // passive cells jump at first
        EXPECT_EQ(App::sum(app.blobMask), 16.0);
        for (unsigned i = 0; i < 140; ++i) {
            EXPECT_EQ(out[i % 10 * 14 + i / 10], app.blobMask(i, 0));
        }
        for (const unsigned passive : {43U, 44U, 95U, 77U})
            EXPECT_EQ(app.blobMask(passive, 0), 0.0);
        EXPECT_EQ(app.blob.blobStage, step);
        EXPECT_EQ(app.blob.blobIteration, 1);
        EXPECT_EQ(app.blob.blobConvergedPrevious, app.blob.blobConverged);
        // The limit adapts from the third step on.
        EXPECT_EQ(app.blob.objectivePrevious == 1e10, step <= 2);
    }
    EXPECT_GT(distance(Matrix(app.blobMask), start), 0.0);
}

}  // namespace
