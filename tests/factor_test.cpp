#include "factor.h"

#include <gtest/gtest.h>

#include "kmat_exception.h"
#include "support/matrices.h"

namespace {

using kmat::ConfigSingleton;
using kmat::DenseMatrix;
using kmat::Factor;
using kmat::KmatException;
using kmat::SparseMatrix;
using test::Matrix;

// A x = b with a positive definite A of which about `density` is not zero.
struct System {
    Matrix a;
    DenseMatrix b;
    SparseMatrix A;

    System(unsigned n, double density, test::Random& random)
        : a(n, n), b(Matrix(n, 2, random).to<DenseMatrix>()), A(nullptr) {
        for (unsigned c = 0; c < n; ++c) {
            a(c, c) = n + random.number();
            for (unsigned r = 0; r < c; ++r) {
                if (random.number(0, 1) < density) a(r, c) = a(c, r) = random.number();
            }
        }
        A = test::built(a, true);
    }

    template <typename Solver>
    void checkSolutions(const Solver& solver) const {
        const Matrix x = gaussSolve(a, Matrix(b));
        EXPECT_LT(distance(Matrix(solve(solver, b)), x), 1e-12);
        const SparseMatrix sparse = solve(solver, b.toSparse());
        EXPECT_EQ(sparse.getNumberOfElements(), static_cast<int>(x.values.size()));
        for (const auto& [r, c, v] : sparse) EXPECT_NEAR(v, x(r, c), 1e-12);
        EXPECT_EQ(KmatException::getLastException(), nullptr);
    }
};

void expectFailure(const char* text) {
    ASSERT_NE(KmatException::getLastException(), nullptr);
    EXPECT_NE(ConfigSingleton::getLastError().find(text), std::string::npos);
    EXPECT_EQ(KmatException::getLastException()->what(), ConfigSingleton::getLastError());
    EXPECT_EQ(ConfigSingleton::getCommonPtr()->status, CHOLMOD_OK);
    KmatException::clearLastException();
}

// Small and sparse systems get a simplicial factor, the large dense one a supernodal.
class FactorTest : public testing::TestWithParam<std::pair<unsigned, double>> {
protected:
    test::Random random;
    System system{GetParam().first, GetParam().second, random};
    Factor factor = system.A.analyze();
};

INSTANTIATE_TEST_SUITE_P(SizesAndDensities, FactorTest,
                         testing::Values(std::pair{1, 0.0}, std::pair{7, 0.5}, std::pair{60, 0.05},
                                         std::pair{130, 1.0}));

TEST_P(FactorTest, Solves) {
    factor.factorize(system.A);
    system.checkSolutions(factor);
    system.checkSolutions(system.A);
}

TEST_P(FactorTest, RefusesADiagonalThatIsNotPositive) {
    const unsigned last = GetParam().first - 1;
    for (const double bad : {-1.0, 0.0}) {
        system.A.getValue(last, last) = bad;
        factor.factorize(system.A);
        expectFailure("not positive definite");
        solve(system.A, system.b);  // leaves the failure pending
        expectFailure("not positive definite");
        solve(system.A, system.b.toSparse());
        expectFailure("not positive definite");
    }
}

TEST_P(FactorTest, FactorisesAgainAlsoAfterAFailure) {
    system.A.getValue(0, 0) = -1.0;
    factor.factorize(system.A);
    expectFailure("not positive definite");
    for (double& v : system.a.values) v *= 1.5;
    system.A = test::built(system.a, true);
    factor.factorize(system.A);
    system.checkSolutions(factor);
}

TEST(FactorStateTest, IsInitialisedByTheAnalysisAndMovedWhole) {
    test::Random random;
    const System system(5, 0.5, random);
    EXPECT_FALSE(Factor().isInitialized());
    Factor source = system.A.analyze();
    EXPECT_TRUE(source.isInitialized());
    source.factorize(system.A);
    Factor moved(std::move(source));
    EXPECT_FALSE(source.isInitialized());
    Factor& alias = moved;
    moved = std::move(alias);
    Factor target = system.A.analyze();
    target = std::move(moved);
    EXPECT_FALSE(moved.isInitialized());
    system.checkSolutions(target);
}

TEST(FactorStateTest, WhatCannotBeIsReportedNotFatal) {
    test::Random random;
    const System system(5, 0.5, random);
    Factor empty;
    empty.factorize(system.A);
    expectFailure("argument missing");
    Factor factor = system.A.analyze();
    factor.factorize(SparseMatrix(nullptr));
    expectFailure("argument missing");
    factor.factorize(system.A);
    for (const auto& [unfit, rows] : {std::pair{&empty, 5U}, {&factor, 4U}}) {
        kmat::errorHandler(0, "", 0, "");
        EXPECT_EQ(Matrix(solve(*unfit, DenseMatrix(rows, 1, 1.0))), Matrix(0, 0));
        EXPECT_NE(ConfigSingleton::getLastError(), "");
        EXPECT_EQ(solve(*unfit, DenseMatrix(rows, 1, 1.0).toSparse()).getRows(), 0U);
        EXPECT_EQ(KmatException::getLastException(), nullptr);
    }
}

}  // namespace
