// Dense factorisations by LAPACK, and the determinant of its own kind.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "kmat_exception.h"
#include "support/matrices.h"

namespace {

using kmat::DenseMatrix;
using kmat::KmatException;
using test::dense;
using test::distance;
using test::Matrix;

const std::string FEW_COLUMNS = "The 3 -th argument had an illegal value";
const std::string FEW_ROWS = "The 4 -th argument had an illegal value";

DenseMatrix matrix(unsigned rows, unsigned columns, const std::vector<double>& byColumns) {
    DenseMatrix m(rows, columns);
    m.set(byColumns.data());
    return m;
}

Matrix identity(unsigned n) {
    Matrix result(n, n);
    for (unsigned i = 0; i < n; ++i) result(i, i) = 1.0;
    return result;
}

std::string takeFailure() {
    const KmatException* failure = KmatException::getLastException();
    const std::string text = failure ? failure->what() : "";
    KmatException::clearLastException();
    return text;
}

TEST(DenseInverseTest, TimesTheMatrixIsTheIdentity) {
    test::Random random;
    for (const unsigned n : {1U, 2U, 5U, 20U}) {
        const Matrix a(n, n, random);
        const DenseMatrix operand = dense(a);
        const Matrix inverse(inversed(operand));
        EXPECT_EQ(Matrix(operand), a);
        EXPECT_LT(distance(product(inverse, a), identity(n)), 1e-10) << n;
        EXPECT_LT(distance(product(a, inverse), identity(n)), 1e-10) << n;
    }
    EXPECT_EQ(takeFailure(), "");
}

TEST(DenseInverseTest, RecordsASingularMatrixWithTheSignOfItsText) {
    DenseMatrix(2, 2, 0.0).inverse();
    EXPECT_EQ(takeFailure(), "U(-1,-1) is exactly zero. The factor U is exactly singular.");
}

TEST(DenseInverseTest, RefusesAMatrixWithTooFewColumnsAndLeavesIt) {
    DenseMatrix tall(3, 2, 1.0);
    tall.inverse();
    EXPECT_EQ(takeFailure(), FEW_COLUMNS);
    EXPECT_EQ(tall, DenseMatrix(3, 2, 1.0));
}

TEST(DenseSolveTest, SolvesInEveryValueCategory) {
    test::Random random;
    const Matrix a(6, 6, random);
    const Matrix x(6, 3, random);
    const DenseMatrix A = dense(a);
    const DenseMatrix B = dense(product(a, x));
    EXPECT_LT(distance(Matrix(solve(A, B)), x), 1e-12);
    EXPECT_LT(distance(Matrix(solve(A.copy(), B)), x), 1e-12);
    EXPECT_LT(distance(Matrix(solve(A.copy(), B.copy())), x), 1e-12);
    DenseMatrix temporary = B.copy();
    const double* const storage = temporary.begin();
    const DenseMatrix inPlace = solve(A, std::move(temporary));
    EXPECT_LT(distance(Matrix(inPlace), x), 1e-12);
    EXPECT_EQ(inPlace.begin(), storage);
    EXPECT_EQ(Matrix(A), a);
    EXPECT_EQ(takeFailure(), "");
}

TEST(DenseSolveTest, RecordsTheFirstZeroPivot) {
    solve(matrix(3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 0}), DenseMatrix(3, 1, 1.0));
    EXPECT_EQ(takeFailure(), "U(-3,-3) is exactly zero. The factor U is exactly singular.");
}

TEST(DenseSolveTest, RefusesMatricesThatDoNotFitTheRightHandSide) {
    solve(DenseMatrix(3, 2, 1.0), DenseMatrix(3, 1, 1.0));
    EXPECT_EQ(takeFailure(), FEW_COLUMNS);
    solve(DenseMatrix(2, 3, 1.0), DenseMatrix(3, 1, 1.0));
    EXPECT_EQ(takeFailure(), FEW_ROWS);
}

TEST(DenseFactorisationTest, OfNothingIsNothing) {
    DenseMatrix null(nullptr);
    null.inverse();
    EXPECT_EQ(Matrix(inversed(DenseMatrix(0, 0))), Matrix(0, 0));
    EXPECT_EQ(Matrix(solve(DenseMatrix(0, 0), DenseMatrix(0, 2))), Matrix(0, 2));
    EXPECT_EQ(takeFailure(), "");
}

TEST(DenseDeterminantTest, IsTheTrueOneUpToThreeRows) {
    EXPECT_EQ(DenseMatrix(0, 0).determinant(), 0.0);
    EXPECT_EQ(DenseMatrix(1, 1, -3.0).determinant(), -3.0);
    EXPECT_EQ(matrix(2, 2, {1, 2, 3, 4}).determinant(), -2.0);
    test::Random random;
    for (int round = 0; round < 20; ++round) {
        const Matrix a(3, 3, random);
        const double byTheFirstRow = a(0, 0) * (a(1, 1) * a(2, 2) - a(1, 2) * a(2, 1)) -
                                     a(0, 1) * (a(1, 0) * a(2, 2) - a(1, 2) * a(2, 0)) +
                                     a(0, 2) * (a(1, 0) * a(2, 1) - a(1, 1) * a(2, 0));
        EXPECT_NEAR(dense(a).determinant(), byTheFirstRow, 1e-15);
    }
}

TEST(DenseDeterminantTest, SumsTheDiagonalsBeyond) {
    EXPECT_EQ(dense(identity(4)).determinant(), 1.0);
    // The true determinant of this permutation is 1.
    EXPECT_EQ(matrix(4, 4, {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0}).determinant(), -1.0);
    // Down the diagonals of 1 2 / .. / the products are 1 * 6 * 11 * 16 and so on.
    std::vector<double> ascending(16);
    for (size_t i = 0; i < 16; ++i) ascending[i] = static_cast<double>(i + 1);
    const double falling = 1. * 6 * 11 * 16 + 5. * 10 * 15 * 4 + 9. * 14 * 3 * 8 + 13. * 2 * 7 * 12;
    const double rising = 13. * 10 * 7 * 4 + 9. * 6 * 3 * 16 + 5. * 2 * 15 * 12 + 1. * 14 * 11 * 8;
    EXPECT_EQ(matrix(4, 4, ascending).determinant(), falling - rising);
}

TEST(DenseDeterminantTest, IsNoNumberWithTooFewRows) {
    EXPECT_TRUE(std::isnan(DenseMatrix(2, 3, 1.0).determinant()));
}

}  // namespace
