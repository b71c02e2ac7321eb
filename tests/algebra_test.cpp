// The algebra of dense and sparse matrices against textbook loops: one table of operations, and
// what the operations do with temporaries, failures and matrices that are empty or not built.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>

#include "kmat_exception.h"
#include "support/matrices.h"

namespace {

using kmat::DenseMatrix;
using kmat::KmatException;
using kmat::SparseMatrix;
using test::built;
using test::combination;
using test::dense;
using test::distance;
using test::Entries;
using test::Matrix;
using test::stored;
using test::triplets;
using test::valuesOf;
using testing::HasSubstr;

Matrix matrix(unsigned rows, unsigned columns, std::vector<double> byColumns) {
    Matrix result(rows, columns);
    result.values = std::move(byColumns);
    return result;
}

Matrix identity(unsigned n) {
    Matrix result(n, n);
    for (unsigned i = 0; i < n; ++i) result(i, i) = 1.0;
    return result;
}

// Random values of which half are 0 and will not be stored.
Matrix halfFull(unsigned rows, unsigned columns, bool symmetric, test::Random& random) {
    Matrix m(rows, columns, random);
    for (double& v : m.values) v = std::max(v, 0.0);
    for (unsigned c = 0; symmetric && c < columns; ++c) {
        for (unsigned r = 0; r < c; ++r) m(c, r) = m(r, c);
    }
    return m;
}

bool storesLowerTriangle(const SparseMatrix& m) {
    return std::ranges::any_of(stored(m), [](const auto& e) { return e.row > e.column; });
}

std::string takeFailure() {
    const KmatException* failure = KmatException::getLastException();
    const std::string text = failure ? failure->what() : "";
    KmatException::clearLastException();
    return text;
}

Matrix valuesOf(const DenseMatrix& m) { return Matrix(m); }

// Calls `op` with every mix of named and temporary operands. A named operand stays as it is, and
// the result of dense matrices is in the storage of the first temporary.
template <typename Operand, typename Op>
void checkBinary(const Operand& a, const Operand& b, double sign, Op op) {
    const Matrix expected = combination(1, valuesOf(a), sign, valuesOf(b));
    for (const auto& mix : test::MIXES) {
        const auto& [aMoved, bMoved] = mix;
        Operand x = a.copy();
        Operand y = b.copy();
        Operand result = test::applied(mix, op, x, y);
        EXPECT_EQ(valuesOf(result), expected);
        if constexpr (std::is_same_v<Operand, SparseMatrix>) {
            EXPECT_EQ(storesLowerTriangle(result),
                      storesLowerTriangle(a) || storesLowerTriangle(b));
            EXPECT_EQ(result.getValue(3, 1), expected(3, 1));  // the views are those of the result
            EXPECT_EQ(stored(x), aMoved ? Entries() : stored(a));
            EXPECT_EQ(stored(y), bMoved && !aMoved ? Entries() : stored(b));
        } else {
            EXPECT_EQ(x.begin() == nullptr, aMoved);
            EXPECT_EQ(y.begin() == nullptr, bMoved && !aMoved);
            EXPECT_TRUE(aMoved || x == a);
            EXPECT_TRUE(bMoved || y == b);
        }
    }
}

template <typename Operand, typename Op>
void checkScaling(const Operand& a, double factor, Op op) {
    const Matrix expected = combination(factor, valuesOf(a), 0, valuesOf(a));
    Operand x = a.copy();
    EXPECT_EQ(valuesOf(op(x)), expected);
    EXPECT_EQ(valuesOf(x), valuesOf(a));
    EXPECT_EQ(valuesOf(op(std::move(x))), expected);
}

template <typename Operand>
void checkSums(const Operand& a, const Operand& b) {
    checkBinary(a, b, 1, std::plus<>());
    checkBinary(a, b, -1, std::minus<>());
    checkScaling(a, -1, std::negate<>());
    checkScaling(a, -2.5, std::bind_front(std::multiplies<>(), -2.5));
    checkScaling(a, 0.5, [](auto&& m) { return std::forward<decltype(m)>(m) * 0.5; });
}

TEST(AlgebraTest, SumsDifferencesAndScalingInEveryValueCategory) {
    test::Random random;
    checkSums(dense(Matrix(37, 23, random)), dense(Matrix(37, 23, random)));
    for (const auto& [symmetricA, symmetricB] : test::MIXES) {
        checkSums(built(halfFull(9, 9, symmetricA, random), symmetricA),
                  built(halfFull(9, 9, symmetricB, random), symmetricB));
    }
    DenseMatrix x = test::column({5, 8});
    EXPECT_EQ(test::listOf(x += x), (std::vector<double>{10, 16}));
    EXPECT_EQ(test::listOf(x -= x), (std::vector<double>{0, 0}));
}

struct Operation {
    const char* what;
    Matrix computed;
    Matrix expected;
};

// Each operation once, of A (m x k) and B (k x n).
void checkOperations(unsigned m, unsigned k, unsigned n, bool symmetric) {
    test::Random random;
    const Matrix a = halfFull(m, k, symmetric, random);
    const Matrix b = halfFull(k, n, false, random);
    const Matrix ab = product(a, b);
    const Matrix bT = transposed(b);
    const Matrix aT = transposed(a);
    const Matrix c(m, n, random);
    const SparseMatrix A = built(a, symmetric);
    const SparseMatrix B = built(b);
    DenseMatrix Y = dense(c);
    A.multiply(false, 1.5, 0.25, dense(b), Y);
    DenseMatrix C = dense(c);
    dense(a).multiply(false, true, 1.5, 0.25, dense(bT), C);
    const Operation operations[] = {
        {"dense * dense", Matrix(dense(a) * dense(b)), ab},
        {"op(dense) op(dense)", Matrix(dense(aT).multiply(true, true, -2.0, dense(bT))),
         combination(-2, ab, 0, ab)},
        {"dense update", Matrix(C), combination(1.5, ab, 0.25, c)},
        {"sparse * dense", Matrix(A * dense(b)), ab},
        {"dense * sparse", Matrix(dense(a) * B), ab},
        {"sparse * sparse", valuesOf(A * B), ab},
        {"op(sparse) dense", Matrix(B.multiply(true, -2.0, dense(aT))),
         combination(-2, transposed(ab), 0, transposed(ab))},
        {"sparse update", Matrix(Y), combination(1.5, ab, 0.25, c)},
        {"transposed", Matrix(transposed(dense(a))), aT},
        {"transposed named", Matrix(transposed(std::as_const(C))), transposed(Matrix(C))},
        {"transposed sparse", valuesOf(transposed(B)), bT},
        {"transposed sparse temporary", valuesOf(transposed(B.copy())), bT},
        {"to sparse", valuesOf(dense(b).toSparse()), b}};
    for (const Operation& t : operations) {
        EXPECT_LT(distance(t.computed, t.expected), 1e-13)
            << t.what << " " << m << " x " << k << " x " << n;
    }
}

TEST(AlgebraTest, OperationsMatchTheTextbook) {
    checkOperations(1, 1, 1, false);
    checkOperations(31, 18, 45, false);
    checkOperations(3, 8, 1, false);
    checkOperations(7, 7, 4, true);
}

TEST(AlgebraTest, SizesOfZeroGiveZerosOrNothing) {
    for (const auto& [m, n, k] :
         {std::tuple{0U, 2U, 3U}, {2U, 0U, 3U}, {2U, 3U, 0U}, {2U, 1U, 0U}}) {
        const DenseMatrix a(m, k);
        const DenseMatrix b(k, n);
        EXPECT_EQ(Matrix(a * b), Matrix(m, n));
        DenseMatrix sum(m, n, 4.0);
        a.multiply(false, false, 1.5, 0.25, b, sum);
        EXPECT_EQ(Matrix(sum), Matrix(DenseMatrix(m, n, 1.0)));
        sum.fill(NAN);  // beta 0 overwrites, whatever was there
        a.multiply(false, false, 1.0, 0.0, b, sum);
        EXPECT_EQ(Matrix(sum), Matrix(m, n));
    }
}

TEST(AlgebraTest, ElementsAreMultipliedDividedAddedAndReduced) {
    test::Random random;
    const Matrix a(37, 23, random);
    const Matrix b(37, 23, random);
    Matrix products = a;
    Matrix quotients = a;
    double dot = 0.0;
    for (std::size_t i = 0; i < a.values.size(); ++i) {
        products.values[i] *= b.values[i];
        quotients.values[i] /= b.values[i];
        dot += a.values[i] * b.values[i];
    }
    const DenseMatrix x = dense(a);
    DenseMatrix y = dense(b);
    EXPECT_NEAR(x.dot(y), dot, 1e-12);
    EXPECT_NEAR(x.length(), std::sqrt(x.dot(x)), 1e-12);
    DenseMatrix result = x.copy();
    result.elemMultiply(y);
    EXPECT_EQ(Matrix(result), products);
    x.elemDivide(y, result);
    EXPECT_EQ(Matrix(result), quotients);
    x.multiplyAddTo(-2.0, y);
    EXPECT_LT(distance(Matrix(y), combination(-2, a, 1, b)), 1e-15);
}

TEST(AlgebraTest, Norms) {
    const Matrix a = matrix(2, 3, {1, -2, 3, 4, 0, -6});  // rows 1 3 0 and -2 4 -6
    EXPECT_EQ(dense(a).norm(0), 12.0);
    EXPECT_EQ(built(a).norm(1), 7.0);
    EXPECT_EQ(test::column({3, -4}).norm(2), 5.0);
    EXPECT_EQ(built(matrix(2, 2, {2, 1, 1, -3}), true).norm(0), 4.0);
}

TEST(AlgebraTest, EqualityIsExact) {
    const DenseMatrix m(2, 3, 6.0);
    const SparseMatrix s = built(matrix(2, 2, {2, 1, 1, -3}), true);
    EXPECT_TRUE(m == m.copy());
    EXPECT_FALSE(m == DenseMatrix(3, 2, 6.0));
    EXPECT_TRUE(DenseMatrix(0, 3) == DenseMatrix(0, 3));
    EXPECT_FALSE(DenseMatrix(0, 3) == DenseMatrix(3, 0));
    for (const double other : {0.0, std::nextafter(1.0, 2.0), std::nan("")}) {
        EXPECT_FALSE(DenseMatrix(1, 1, 1.0) == DenseMatrix(test::column({other})));
        EXPECT_FALSE(s == built(matrix(2, 2, {2, 1, other, -3}))) << other;
    }
    EXPECT_TRUE(s == built(matrix(3, 3, {2, 1, 9, 1, -3, 9, 9, 9, 9})));  // may be larger
    EXPECT_TRUE(built(matrix(2, 2, {2, 0, 0, 0})) != s);
}

// Half full, with a diagonal of 2 of which (4, 4) is not stored; stored as symmetric or not.
class SparseOperatorTest : public testing::TestWithParam<bool> {
protected:
    test::Random random;
    Matrix a = halfFull(6, 6, GetParam(), random);
    SparseMatrix m{nullptr};

    SparseOperatorTest() {
        for (unsigned i = 0; i < 6; ++i) a(i, i) = i == 4 ? 0.0 : 2.0;
        m = built(a, GetParam());
    }
};

INSTANTIATE_TEST_SUITE_P(Storage, SparseOperatorTest, testing::Bool());

TEST_P(SparseOperatorTest, FixedDegreesOfFreedomKeepADiagonalOfOne) {
    const std::vector<double> free = {1, 0, 0.5, 1, 0, 1};
    for (unsigned i = 0; i < 36; ++i) a.values[i] *= free[i % 6] * free[i / 6];
    a(1, 1) = 1.0;
    m.setNullSpace(test::column(free));
    EXPECT_EQ(valuesOf(m), a);
}

TEST_P(SparseOperatorTest, RowSumsAreAdded) {
    DenseMatrix sums(6, 1, 0.25);
    m.sumRows(sums);
    Matrix expected = test::rowSums(a);
    for (double& v : expected.values) v += 0.25;
    EXPECT_LT(distance(Matrix(sums), expected), 1e-15);
}

TEST_P(SparseOperatorTest, EntriesUpToTheToleranceAreDropped) {
    constexpr double tolerance = 0.4;
    a(3, 2) = a(2, 3) = tolerance;
    m = built(a, GetParam());
    m.dropSmallEntries(tolerance);
    for (double& v : a.values) v = v > tolerance ? v : 0.0;
    EXPECT_EQ(valuesOf(m), a);
    EXPECT_FALSE(m.hasElement(3, 2));
    EXPECT_EQ(m.getValue(3, 3), 2.0);  // the views are those of what is left
}

TEST_P(SparseOperatorTest, SymmetrisingKeepsTheUpperTriangle) {
    m = built(a);
    m.symmetrize();
    EXPECT_FALSE(storesLowerTriangle(m));
    Matrix mirrored = a;
    for (unsigned i = 0; i < 36; ++i) {
        if (i % 6 > i / 6) mirrored(i % 6, i / 6) = a(i / 6, i % 6);
    }
    EXPECT_EQ(valuesOf(m), mirrored);
    EXPECT_EQ(m.getValue(5, 1), a(1, 5));
}

TEST(SparseStateTest, OperatorsLeaveAListAlone) {
    SparseMatrix list = triplets(matrix(2, 2, {1, 2, 3, 4}), false);
    const Entries before = stored(list);
    DenseMatrix sums = test::column({7, 8});
    list.sumRows(sums);
    list.setNullSpace(sums);
    list.symmetrize();
    list.dropSmallEntries(2.5);
    list.transpose();
    EXPECT_EQ(test::listOf(sums), (std::vector<double>{7, 8}));
    EXPECT_EQ(stored(list), before);
}

TEST(SparseStateTest, CopiesOfEveryFormAreIndependent) {
    SparseMatrix sources[] = {triplets(matrix(2, 2, {1, 2, 3, 4}), false),
                              built(matrix(2, 2, {2, 1, 1, -3}), true),
                              SparseMatrix(3, 2, false, 3), SparseMatrix(nullptr)};
    for (SparseMatrix& source : sources) {
        const Entries before = stored(source);
        SparseMatrix copy = source.copy();
        EXPECT_EQ(copy.getMatrixState(), source.getMatrixState());
        EXPECT_EQ(copy.getRows(), source.getRows());
        EXPECT_EQ(copy.getColumns(), source.getColumns());
        for (int i = 0; i < 9; ++i) source.getValue(0, 0) += 1.0;  // a list grows
        EXPECT_EQ(stored(copy), before);
    }
    EXPECT_EQ(sources[1].copy().getValue(1, 0), 1.0);  // still symmetric
}

TEST(AlgebraFailureTest, WhatCholmodRefusesGivesTheEmptyMatrix) {
    const SparseMatrix null(nullptr);
    const SparseMatrix wide = built(Matrix(DenseMatrix(2, 3, 1.0)));
    const DenseMatrix X(2, 2, 1.0);  // too few rows for it
    for (const SparseMatrix* refused : {&null, &wide}) {
        kmat::errorHandler(0, "", 0, "");
        EXPECT_EQ(Matrix(*refused * X), Matrix(0, 0));
        EXPECT_NE(kmat::ConfigSingleton::getLastError(), "");
        EXPECT_EQ(Matrix(refused->multiply(false, 1.0, X)), Matrix(0, 0));
        EXPECT_EQ(Matrix(DenseMatrix(3, 4) * *refused), Matrix(0, 0));
    }
    EXPECT_EQ(takeFailure(), "");
}

TEST(AlgebraFailureTest, EmptyMatricesAreSafeToUse) {
    DenseMatrix empty(nullptr);
    empty.fill(1.0);
    empty.zero();
    empty.transpose();
    empty.inverse();
    EXPECT_EQ(Matrix(empty + empty * empty), Matrix(0, 0));
    EXPECT_EQ(Matrix(solve(DenseMatrix(0, 0), DenseMatrix(0, 2))), Matrix(0, 2));
    EXPECT_EQ(takeFailure(), "");
}

TEST(DenseMatrixTest, TakesAndGivesNumbersColumnByColumn) {
    DenseMatrix m(2, 3, NAN);  // unwritten, but of full size
    const std::vector<float> floats = {0.1F, -2.0F, 3e30F, 4.0F, 5.0F, 6.0F};
    std::vector<float> back(6);
    m.set(floats.data());
    m.get(back.data());
    EXPECT_EQ(back, floats);
    EXPECT_EQ(m(0, 1), static_cast<double>(3e30F));
    EXPECT_EQ(m(1, 2), 6.0);
    m.zero();
    EXPECT_EQ(Matrix(m), Matrix(2, 3));
    EXPECT_TRUE(test::isUnset(kmat::undefinedVector(3)));
}

TEST(DenseMatrixTest, MovesTakeTheStorage) {
    DenseMatrix x(3, 2, 4.0);
    const double* storage = x.begin();
    DenseMatrix& alias = x;
    x = std::move(alias);
    EXPECT_EQ(x.begin(), storage);
    DenseMatrix y(1, 1, 5.0);
    y = std::move(x);
    DenseMatrix z(std::move(y));
    swap(y, z);
    EXPECT_EQ(y.begin(), storage);
    EXPECT_TRUE(y == DenseMatrix(3, 2, 4.0));
    for (const DenseMatrix* empty : {&x, &z}) EXPECT_EQ(Matrix(*empty), Matrix(0, 0));
}

TEST(DenseFactorisationTest, InvertsAndSolvesInEveryValueCategory) {
    test::Random random;
    for (const unsigned n : {1U, 2U, 6U, 20U}) {
        const Matrix a(n, n, random);
        const Matrix x(n, 3, random);
        const DenseMatrix A = dense(a);
        const DenseMatrix B = dense(product(a, x));
        EXPECT_LT(distance(product(Matrix(inversed(A)), a), identity(n)), 1e-10) << n;
        EXPECT_LT(distance(Matrix(solve(A, B)), x), 1e-11);
        EXPECT_LT(distance(Matrix(solve(A.copy(), B)), x), 1e-11);
        EXPECT_LT(distance(Matrix(solve(A, B.copy())), x), 1e-11);
        EXPECT_LT(distance(Matrix(solve(A.copy(), B.copy())), x), 1e-11);
        EXPECT_EQ(Matrix(A), a);
    }
    EXPECT_EQ(takeFailure(), "");
}

TEST(DenseFactorisationTest, RecordsWhatLapackRefuses) {
    const auto pivot = [](const std::string& at) {
        return "U(" + at + ") is exactly zero. The factor U is exactly singular.";
    };
    DenseMatrix(2, 2, 0.0).inverse();
    EXPECT_EQ(takeFailure(), pivot("-1,-1"));
    solve(dense(matrix(3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 0})), DenseMatrix(3, 1, 1.0));
    EXPECT_EQ(takeFailure(), pivot("-3,-3"));
    DenseMatrix tall(3, 2, 1.0);
    tall.inverse();
    EXPECT_EQ(takeFailure(), "The 3 -th argument had an illegal value");
    EXPECT_EQ(tall, DenseMatrix(3, 2, 1.0));
    solve(tall, DenseMatrix(3, 1, 1.0));
    EXPECT_EQ(takeFailure(), "The 3 -th argument had an illegal value");
    solve(DenseMatrix(2, 3, 1.0), DenseMatrix(3, 1, 1.0));
    EXPECT_EQ(takeFailure(), "The 4 -th argument had an illegal value");
}

TEST(DenseFactorisationTest, DeterminantSumsTheDiagonals) {
    EXPECT_EQ(DenseMatrix(0, 0).determinant(), 0.0);
    EXPECT_EQ(DenseMatrix(1, 1, -3.0).determinant(), -3.0);
    EXPECT_EQ(dense(matrix(2, 2, {1, 2, 3, 4})).determinant(), -2.0);
    EXPECT_EQ(dense(matrix(3, 3, {2, 7, 1, 8, 2, 8, 1, 8, 4})).determinant(), -218.0);
    EXPECT_TRUE(std::isnan(DenseMatrix(2, 3, 1.0).determinant()));
    // Beyond three rows it is not the true one. Down the diagonals of the squares of 1 2 / .. / the
    // products are those of 1 * 6 * 11 * 16 and so on.
    std::vector<double> squares(16);
    for (std::size_t i = 0; i < 16; ++i) squares[i] = static_cast<double>((i + 1) * (i + 1));
    const auto product = [](int a, int b, int c, int d) {
        return std::pow(1.0 * a * b * c * d, 2);
    };
    const double falling = product(1, 6, 11, 16) + product(5, 10, 15, 4) + product(9, 14, 3, 8) +
                           product(13, 2, 7, 12);
    const double rising = product(13, 10, 7, 4) + product(9, 6, 3, 16) + product(5, 2, 15, 12) +
                          product(1, 14, 11, 8);
    ASSERT_NE(falling, rising);
    EXPECT_EQ(dense(matrix(4, 4, squares)).determinant(), falling - rising);
}

TEST(AlgebraOutputTest, PrintsASummaryAndTheEntries) {
    const auto check = [](const auto& printed, const char* expected, const char* summary) {
        std::ostringstream out;
        testing::internal::CaptureStdout();
        out << printed;
        EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr(summary));
        EXPECT_EQ(out.str(), expected);
    };
    SparseMatrix list(3, 3, false, 0);
    list.getValue(0, 1) += 2.5;
    list.getValue(2, 0) += -1e-20;
    check(SparseMatrix(nullptr), "\n[Empty sparse matrix]\n", "");
    check(list, "\n( 0, 1 ) =\t2.5\n( 2, 0 ) =\t-1e-20\n", "CHOLMOD triplet");
    check(built(matrix(2, 2, {2, 1, 1, 3}), true), "\n[2, 1;\n 0, 3];\n", "CHOLMOD sparse");
    check(dense(matrix(2, 2, {2, 1e20, -1.23456789, 2})), "\n[2, -1.23457;\n 1e+20, 2];\n",
          "CHOLMOD dense");
    check(DenseMatrix(0, 2), "\n[];\n", "CHOLMOD dense");
    check(DenseMatrix(nullptr), "\n[Empty dense matrix]\n", "");
}

TEST(AlgebraDeathTest, OperandsThatDoNotFitStopTheProcess) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const SparseMatrix A = built(Matrix(DenseMatrix(3, 3, 1.0)), true);
    const SparseMatrix wide = built(Matrix(DenseMatrix(3, 4, 1.0)));
    const SparseMatrix open = triplets(Matrix(DenseMatrix(3, 4, 1.0)), false);
    const DenseMatrix small(2, 2);
    const DenseMatrix large(2, 3);
    const std::tuple<const char*, const char*, std::function<void()>> cases[] = {
        {"operator+", "LHS.sparse && RHS.sparse", [&] { A + open; }},  // before the sizes
        {"operator+", "LHS.nrow == RHS.nrow && LHS.ncol == RHS.ncol", [&] { A + wide; }},
        {"operator-", "LHS.sparse && RHS.sparse", [&] { A - open.copy(); }},
        {"operator-", "LHS.nrow == RHS.nrow && LHS.ncol == RHS.ncol", [&] { A - wide; }},
        {"operator*", "LHS.sparse && RHS.sparse", [&] { A* open; }},
        {"operator*", "LHS.ncol == RHS.nrow", [&] { wide* A; }},
        {"operator*", "LHS.sparse", [&] { open * 2.0; }},
        {"operator*", "LHS.sparse", [&] { 2.0 * open.copy(); }},
        {"transpose", "symmetry == ASYMMETRIC", [&] { A.copy().transpose(); }},
        {"transposed", "M.symmetry == ASYMMETRIC", [&] { transposed(A); }},
        {"operator+=", "size() == RHS.size()", [&] { large + small; }},
        {"operator+=", "size() == RHS.size()", [&] { small - large.copy(); }}};
    for (const auto& [function, condition, call] : cases) {
        const std::string report =
            std::string(": ") + function + ": Assertion `" + condition + "' failed.\n";
        EXPECT_DEATH(call(), AllOf(HasSubstr(": SparseMatrixLib/"), HasSubstr(report)));
    }
}

}  // namespace
