#include "factor.h"

#include <gtest/gtest.h>

#include "kmat_exception.h"
#include "test_support.h"

namespace {

using kmat::ConfigSingleton;
using kmat::DenseMatrix;
using kmat::Factor;
using kmat::KmatException;
using kmat::SparseMatrix;
using test::Matrix;

void addUpper(SparseMatrix& target, const Matrix& a) {
    for (unsigned c = 0; c < a.columns; ++c) {
        for (unsigned r = 0; r <= c; ++r) {
            if (a(r, c) != 0.0) target.getValue(r, c) += a(r, c);
        }
    }
}

// A x = b with a positive definite A of which about `density` is not zero.
struct System {
    Matrix a;
    DenseMatrix b;
    SparseMatrix A;

    System(unsigned n, double density, test::Random& random)
        : a(n, n), b(Matrix(n, 2, random).to<DenseMatrix>()), A(n, n, true, 0) {
        for (unsigned c = 0; c < n; ++c) {
            a(c, c) = n + random.number();
            for (unsigned r = 0; r < c; ++r) {
                if (random.number(0, 1) < density) a(r, c) = a(c, r) = random.number();
            }
        }
        addUpper(A, a);
        A.build();
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

TEST(FactorTest, SolvesRefactorisesAndRecoversFromABadDiagonal) {
    test::Random random;
    // Small and sparse ones get a simplicial factor, the large dense one a supernodal.
    for (const auto& [n, density] : {std::pair{1U, 0.0}, {7U, 0.5}, {60U, 0.05}, {130U, 1.0}}) {
        SCOPED_TRACE(n);
        System system(n, density, random);
        Factor factor;
        EXPECT_FALSE(factor.isInitialized());
        factor = system.A.analyze();
        EXPECT_TRUE(factor.isInitialized());
        for (const double bad : {-1.0, 0.0}) {
            factor.factorize(system.A);
            system.checkSolutions(factor);
            system.checkSolutions(system.A);
            system.A.getValue(n - 1, n - 1) = bad;
            factor.factorize(system.A);
            expectFailure("not positive definite");
            solve(system.A, system.b);  // leaves the failure pending
            expectFailure("not positive definite");
            for (double& v : system.a.values) v *= 1.5;
            system.A.zero();
            addUpper(system.A, system.a);
        }
    }
}

TEST(FactorTest, MovesAndMisuseAreReportedNotFatal) {
    test::Random random;
    const System system(5, 0.5, random);
    Factor source = system.A.analyze();
    source.factorize(system.A);
    Factor moved(std::move(source));
    Factor& alias = moved;
    moved = std::move(alias);
    Factor target = system.A.analyze();
    target = std::move(moved);
    EXPECT_FALSE(source.isInitialized() || moved.isInitialized());
    system.checkSolutions(target);
    for (const auto& [factor, rows] : {std::pair{&moved, 5U}, {&target, 4U}}) {
        kmat::errorHandler(0, "", 0, "");
        EXPECT_EQ(Matrix(solve(*factor, DenseMatrix(rows, 1, 1.0))), Matrix(0, 0));
        EXPECT_NE(ConfigSingleton::getLastError(), "");
        EXPECT_EQ(solve(*factor, DenseMatrix(rows, 1, 1.0).toSparse()).getRows(), 0U);
        EXPECT_EQ(KmatException::getLastException(), nullptr);
    }
    moved.factorize(system.A);
    expectFailure("argument missing");
    target.factorize(SparseMatrix(nullptr));
    expectFailure("argument missing");
}

}  // namespace
