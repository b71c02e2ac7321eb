// Construction, filters, assembly and analysis of the optimiser.
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <memory>
#include <new>
#include <stdexcept>

#ifdef VOXAM_PARALLEL_TBB
#include <tbb/global_control.h>
#endif

#include "app_support.h"
#include "kmat_exception.h"

namespace {

using kmat::DenseMatrix;
using test::Matrix;
using test::Settings;
using App = SolverAppInspector;

bool allEqual(const DenseMatrix& m, double value) {
    return std::all_of(m.begin(), m.end(), [value](double v) {
        return v == value || (std::isnan(v) && std::isnan(value));
    });
}

TEST(AppConstructionTest, SizesAndStartValues) {
    App app(4, 3, 2, 3, 0.3F, 2);
    EXPECT_EQ(app.equilibrium.ndof, 40U);
    EXPECT_EQ(app.grids.numberOfMeshElements, 432U);
    EXPECT_EQ(app.Emin, 0.009999999776482582);
    EXPECT_EQ(app.volumeFraction, 0.30000001192092896);
    EXPECT_EQ(app.equilibrium.U.size(), 2U);
    EXPECT_EQ(app.equilibrium.F[1].getRows(), 40U);
    for (const auto* unset : {&app.rhoOld, &app.meshRho, &app.meshRhoFiltered, &app.dc,
                              &app.equilibrium.U[1], &app.equilibrium.F[0], &app.blobMask}) {
        EXPECT_TRUE(unset->getRows() > 0 && allEqual(*unset, NAN));
    }
    app.iteration = app.loop = 5;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(app.rho.getRows(), 48U);
        EXPECT_TRUE(allEqual(app.rho, 0.3F) && allEqual(app.rhoPhys, 0.3F));
        app.rho.fill(0.5);
        app.rhoPhys.fill(0.7);
        EXPECT_EQ(App::sum(app.rho), 24.0);
        if (round == 0) app.reset();
    }
    EXPECT_EQ(app.iteration + app.loop, 10);
    app.restartIteration();
    EXPECT_EQ(app.iteration + app.loop, 0);
    EXPECT_TRUE(allEqual(app.rho, 0.5));
}

TEST(AppConstructionTest, ZeroSizesAreHarmlessAndHugeOnesRefused) {
    for (const auto& [nelx, nely, subdivision, meshFactor] :
         {std::array{0U, 3U, 1U, 1U}, {3U, 0U, 1U, 1U}, {3U, 2U, 0U, 1U}, {3U, 2U, 1U, 0U}}) {
        App app(nelx, nely, subdivision, meshFactor, 0.5F, -1);
        EXPECT_EQ(app.grids.numberOfMeshElements, 0U);
        test::send(test::cantilever(2, 1), app);
        for (int i = 0; i < 3; ++i) EXPECT_EQ(test::iterate(app), "Change load / support");
    }
    for (const auto& [nelx, nely, subdivision] :
         {std::array{65536U, 65536U, 1U}, {UINT_MAX, 1U, 1U}, {1U, 1U, 65536U}}) {
        EXPECT_THROW(App(nelx, nely, subdivision, 1, 0.5F, 1), std::bad_alloc);
    }
    EXPECT_THROW(App(2, 2, 1, 1, NAN, 1), std::invalid_argument);
}

TEST(AppConstructionTest, CoarseIndexIsExactOnlyWhereBothRefinementsAgree) {
    const App app(4, 3, 2, 2, 0.5F, 1);
    for (int i = 0; i < 48; ++i) EXPECT_EQ(app.getCoarseGridIndex(i), i / 6 / 2 * 3 + i % 6 / 2);
    const App coarserMesh(4, 3, 2, 1, 0.5F, 1);
    for (const auto& [i, cell] : {std::pair{5, 2}, {6, 3}, {11, 5}, {47, 23}}) {
        EXPECT_EQ(coarserMesh.getCoarseGridIndex(i), cell);
    }
}

// The weights of all pairs are those of a cone, only those above 0 are stored, and the first `shared` cells have the largest of their row sums in common.
void checkFilter(const kmat::SparseMatrix& H, const DenseMatrix& Hs, unsigned nx, unsigned ny,
                 double radius, unsigned shared) {
    const unsigned n = nx * ny;
    Matrix weights(n, n);
    Matrix sums(n, 1);
    for (unsigned i = 0; i < n * n; ++i) {
        const int dx = static_cast<int>(i / n / ny) - static_cast<int>(i % n / ny);
        const int dy = static_cast<int>(i / n % ny) - static_cast<int>(i % n % ny);
        weights.values[i] = std::max(0.0, radius - std::sqrt(dx * dx + dy * dy));
        sums(i % n, 0) += weights.values[i];
        if (i / n < i % n) continue;
        EXPECT_EQ(H.hasElement(i % n, i / n), weights.values[i] > 0.0) << dx << " " << dy;
    }
    EXPECT_LT(distance(Matrix(H.toDense()), weights), 1e-14);
    const auto end = sums.values.begin() + std::min(n, shared);
    if (shared > 0)
        std::fill(sums.values.begin(), end, *std::max_element(sums.values.begin(), end));
    EXPECT_LT(distance(Matrix(Hs), sums), 1e-13);
}

TEST(AppFilterTest, FiltersAreConesOnTheirNeighbourhoods) {
    for (const auto& [nelx, nely, n, m] : {std::array{9U, 10U, 1U, 1U},
                                           {4U, 3U, 2U, 3U},
                                           {2U, 3U, 3U, 2U},
                                           {2U, 3U, 4U, 1U},
                                           {1U, 8U, 1U, 2U},
                                           {8U, 1U, 2U, 1U}}) {
        SCOPED_TRACE(testing::Message() << nelx << " " << nely << " " << n << " " << m);
        const App app(nelx, nely, n, m, 0.5F, 1);
        const unsigned coarse = nelx * nely;
        checkFilter(app.H.weights, app.H.normaliser, nelx * n, nely * n, 3.0, coarse);
        checkFilter(app.blob.Hcoarse.weights, app.blob.Hcoarse.normaliser, nelx, nely, 3.0 / n,
                    coarse);
        checkFilter(app.meshH.weights, app.meshH.normaliser, nelx * n * m, nely * n * m, m, 0);
        checkFilter(app.blob.blobH.weights, app.blob.blobH.normaliser, nelx, nely, 1.2F, 0);
    }
}

// The stiffness matrix by the textbook. `floorOf` gives the stiffness floor of a coarse cell.
template <typename FloorOf>
Matrix stiffness(const App& app, const FloorOf& floorOf) {
    const unsigned n = app.grids.subdivision;
    const double h = 2.0F / static_cast<float>(n);  // of a fine cell, in single precision
    Matrix K(app.equilibrium.ndof, app.equilibrium.ndof);
    for (unsigned e = 0; e < app.grids.numberOfElements; ++e) {
        const unsigned column = e / (app.grids.nely * n);
        const unsigned row = e % (app.grids.nely * n);
        const double xi = h * (column % n) + h / 2 - 1;
        const double eta = h * (row % n) + h / 2 - 1;
        const Matrix KE = n == 1 ? test::exactElementMatrix() : test::stiffnessAt(xi, eta);
        const double floor = floorOf(column / n * app.grids.nely + row / n);
        const double modulus = floor + std::pow(app.rhoPhys(e, 0), app.penalty) * (1 - floor);
        const unsigned p = 2 * (column / n * app.equilibrium.nodesY + row / n);
        const unsigned q = p + 2 * app.equilibrium.nodesY;
        const std::array dof{p, p + 1, q, q + 1, q + 2, q + 3, p + 2, p + 3};
        for (unsigned i = 0; i < 64; ++i) {
            K(dof[i % 8], dof[i / 8]) += KE.values[i] * modulus * (n == 1 ? 1.0 : 4.0 / (n * n));
        }
    }
    return K;
}

Matrix stiffness(const App& app) {
    return stiffness(app, [&app](unsigned) { return app.Emin; });
}

TEST(AppAssemblyTest, RefillsGiveTheFirstBuildAndTheTextbook) {
    test::Random random;
    for (const unsigned n : {1U, 2U, 3U}) {
        App app(4, 3, n, n, 0.5F, 1);
        for (const double penalty : {3.0, 1.0, 2.5, 2.5}) {
            app.penalty = penalty;
            test::fillRandom(app.rhoPhys, random, 0.0, 1.0);
            app.assemble();
            const Matrix first(app.equilibrium.K.toDense());
            EXPECT_LT(distance(first, stiffness(app)), 1e-14);
            app.assemble();
            EXPECT_LT(distance(Matrix(app.equilibrium.K.toDense()), first), 1e-15);
        }
        const short passive[] = {2, 1, 1, 1, 0, 3, 2, 3, 2, 0, 1};  // (3, 2) is void and solid
        app.passiveBlock.update(passive);
        app.assemble();
        const auto floorOf = [&app](unsigned c) { return c == 3 || c == 11 ? 1e-9 : app.Emin; };
        EXPECT_LT(distance(Matrix(app.equilibrium.K.toDense()), stiffness(app, floorOf)), 1e-14);
    }
}

TEST(AppAssemblyTest, PassiveVoidKeepsATinyStiffness) {
    App app(1, 1, 1, 1, 0.5F, 1);
    const short passive[] = {1, 0, 0, 0, 0};
    app.passiveBlock.update(passive);
    app.rhoPhys.fill(0.0);
    for (const double floor : {9.999999717180685e-10, 1e-9}) {  // at first in single precision
        app.assemble();
        EXPECT_DOUBLE_EQ(app.equilibrium.K.getValue(0, 0),
                         test::exactElementMatrix()(0, 0) * floor);
    }
}

TEST(AppAssemblyTest, OneTaskAtATimeGivesTheSameBitsAsMany) {
    test::Random random;
    App app(61, 9, 2, 2, 0.5F, 1);
    app.assemble();
    const auto valuesAfterRefill = [&app] {
        app.assemble();
        return std::vector(app.equilibrium.K.getValues(),
                           app.equilibrium.K.getValues() + app.equilibrium.K.getNumberOfElements());
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

TEST(AppAnalysisTest, DisplacementsAndComplianceMatchADenseReference) {
    test::Random random;
    for (const unsigned n : {1U, 2U}) {
        App app(3, 2, n, n, 0.5F, 3);
        Settings settings = test::cantilever(3, 2);
        settings.loads.add(3, 1, 0.5F, 0.25F).add(1, 2, 0, -1, 2).add(1, 1, 1, 1, 1);
        settings.supports.add(2, 0, 0.6F).add(2, 2, -0.4F);  // rounded to y and x
        settings.loadCases = {2, 0, 2, -1, 3};
        test::send(settings, app);
        Matrix F(24, 3);
        F(20, 0) = 0.5;
        F(21, 0) = 1.25;
        F(11, 2) = -1.0;
        for (int round = 0; round < 2; ++round) {  // triplets at first, then the compressed form
            test::fillRandom(app.rhoPhys, random, round * 0.2, round);
            ASSERT_TRUE(app.solveStateCHOL());
            app.setObjectivePlusSens();
            const Matrix plate = stiffness(app);
            Matrix K = plate;
            for (const unsigned d : {0, 1, 2, 3, 4, 5, 13, 16}) K(d, d) = 1e8;
            const Matrix U = gaussSolve(K, F);
            const Matrix energy = product(transposed(U), product(plate, U));
            EXPECT_NEAR(app.objective, energy(0, 0) + energy(2, 2), 1e-10 * app.objective);
            for (unsigned i = 0; i < 24; ++i) {
                for (const unsigned lc : {0U, 2U}) {
                    const double scale = std::fabs(U(i, lc)) + 1e-14;  // reactions move by / 1e8
                    EXPECT_NEAR(app.equilibrium.U[lc](i, 0), U(i, lc), 1e-9 * scale) << i;
                }
            }
            EXPECT_TRUE(allEqual(app.equilibrium.U[1], NAN));  // not in use
            EXPECT_EQ(app.equilibrium.K.getValue(13, 13), 1e8);
            EXPECT_EQ(allEqual(app.dc, 0.0), round == 0);  // without material
        }
        for (double& u : app.equilibrium.U[0])
            u = 1e6 / 3;  // without strain: round-off is all there is
        app.equilibrium.U[2].fill(NAN);
        app.setObjectivePlusSens();
        for (const double v : app.dc) EXPECT_TRUE(v <= 0.0 && v > -0.01) << v;
        settings.loadCases = {};
        test::send(settings, app);
        ASSERT_TRUE(app.solveStateCHOL());
        app.setObjectivePlusSens();
        EXPECT_EQ(app.objective, 0.0);
        for (const auto* m : {&app.dc, &app.dv, &app.blobSensitivity}) EXPECT_TRUE(allEqual(*m, 0));
    }
}

TEST(AppAnalysisTest, SensitivitiesAreTheDerivativesOfTheCompliance) {
    constexpr double h = 1e-5;
    test::Random random;
    for (const unsigned n : {1U, 2U, 3U}) {
        App app(3, 2, n, n, 0.4F, 2);
        Settings settings = test::cantilever(3, 2);
        settings.loads.add(2, 0, 0.3F, -0.5F, 1);
        settings.loadCases = {0, 1};
        test::send(settings, app);
        app.penalty = 2.5;
        test::fillRandom(app.rhoPhys, random, 0.3, 1.0);
        test::fillRandom(app.rho, random, 0.3, 1.0);
        const auto complianceAt = [&](unsigned e, double step) {
            app.rhoPhys(e, 0) += step;
            EXPECT_TRUE(app.solveStateCHOL());
            app.setObjectivePlusSens();
            app.rhoPhys(e, 0) -= step;
            return app.objective;
        };
        const auto coarse = [&](unsigned e) { return app.getCoarseGridIndex(static_cast<int>(e)); };
        Matrix blob(6, 1);
        std::vector<double> dc;
        for (unsigned e = 0; e < app.grids.numberOfElements; ++e) {
            dc.push_back((complianceAt(e, h) - complianceAt(e, -h)) / (2 * h));
            blob(static_cast<unsigned>(coarse(e)), 0) -= dc[e] * app.rho(e, 0) / (n * n);
        }
        complianceAt(0, 0.0);
        for (const double mask : {0.0, 0.25, 1.0}) {  // of the blob takes its part of cell 4
            app.blobMask(4, 0) = mask;
            app.setObjectivePlusSens();
            for (unsigned e = 0; e < app.grids.numberOfElements; ++e) {
                const double outside = coarse(e) == 4 ? 1 - mask : 1.0;
                EXPECT_NEAR(app.dc(e, 0), outside * dc[e], 1e-6 * std::fabs(dc[e])) << e;
                EXPECT_NEAR(app.dv(e, 0), 2 / (app.grids.numberOfElements * 0.4),
                            1e-7);  // two cases
            }
            for (unsigned i = 0; i < 6; ++i) {
                EXPECT_NEAR(app.blobSensitivity(i, 0), blob(i, 0), 1e-6 * blob(i, 0));
            }
        }
        app.computeConstraint();
        EXPECT_NEAR(app.constraint, App::sum(app.rhoPhys) / (app.grids.numberOfElements * 0.4) - 1,
                    1e-7);
    }
}

TEST(AppAnalysisTest, ComplianceOfASolidPlateIsForceTimesDisplacement) {
    for (const unsigned n : {1U, 2U, 4U}) {
        App app(4, 3, n, n, 1.0F, 1);
        // Under unit stress it is the area.
        for (const double known : {12.0, 0.0}) {
            const Settings stretched{test::tension(4, 3, 1), test::slidingLeftEdge(3)};
            test::send(known > 0.0 ? stretched : test::cantilever(4, 3), app);
            ASSERT_TRUE(app.solveStateCHOL());
            app.setObjectivePlusSens();
            EXPECT_NEAR(app.objective, app.equilibrium.F[0].dot(app.equilibrium.U[0]),
                        1e-6 * app.objective);
            EXPECT_TRUE(known == 0.0 || std::fabs(app.objective - known) < 1e-5);
        }
    }
}

TEST(AppAnalysisTest, FailedSolvesKeepTheDisplacementsAndLeaveNoException) {
    App app(3, 2, 1, 1, 0.5F, 1);
    const Settings good = test::cantilever(3, 2);
    test::send(good, app);
    ASSERT_TRUE(app.solveStateCHOL());
    const Matrix before(app.equilibrium.U[0]);
    std::vector<Settings> bad;
    for (const float off : {-1.0F, 4.0F, 3e9F, -INFINITY, NAN}) {
        bad.insert(bad.end(), 6, good);
        Settings* s = &bad.back();
        s[0].loads.add(1, 1, 1, 1, off);
        s[-1].supports.add(0, 0, 8 * off);  // 24 degrees of freedom
        s[-2].loads.add(off, 1, 0);
        s[-3].loads.add(1, off, 0);
        s[-4].supports.add(off, 1, 0);
        s[-5].supports.add(1, off, 0);
    }
    bad.push_back(good);
    for (const Settings& settings : bad) {
        test::send(settings, app);
        if (&settings == &bad.back()) app.Emin = -1.0;
        EXPECT_FALSE(app.solveStateCHOL());
        EXPECT_EQ(Matrix(app.equilibrium.U[0]), before);
        EXPECT_EQ(kmat::KmatException::getLastException(), nullptr);
    }
    app.Emin = 0.01;
    EXPECT_TRUE(app.solveStateCHOL());
}

TEST(AppAnalysisTest, VerificationTellsWhatIsWrong) {
    App app(1, 1, 1, 1, 0.5F, 2);
    test::send(test::cantilever(1, 1), app);
    const char* const notHeld = "Change load/support";
    const char* const noWork = "Load cannot be on top of support";
    const std::tuple<double, double, const char*> cases[] = {
        {1.0, 1.0, ""},        {1.1e15, 1.0, notHeld}, {0.9e15, 1.0, ""},  {1e-6, 1e5, notHeld},
        {1e14, 1e8, notHeld},  {0.9e-10, 0.0, noWork}, {1.1e-10, 0.0, ""}, {0.0, 0.0, noWork},
        {1e-12, 1e3, notHeld}, {NAN, 1.0, ""}};
    for (const auto& [objective, displacement, text] : cases) {
        app.message.clear();
        app.objective = objective;
        app.equilibrium.U[0].fill(0.0);
        app.equilibrium.U[0](0, 0) = displacement;
        app.equilibrium.U[1].fill(1e9);  // not in use
        EXPECT_EQ(app.verifyValidLoadAndSupports(), *text == '\0');
        EXPECT_EQ(app.message, text) << objective;
    }
}

}  // namespace
