#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "kmat_exception.h"
#include "support/matrices.h"

namespace {

using kmat::DenseMatrix;
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

// Random values of which half are 0 and will not be stored.
Matrix sample(unsigned rows, unsigned columns, bool symmetric, test::Random& random) {
    Matrix m(rows, columns, random);
    for (double& v : m.values) v = std::max(v, 0.0);
    for (unsigned c = 0; symmetric && c < columns; ++c) {
        for (unsigned r = 0; r < c; ++r) m(c, r) = m(r, c);
    }
    return m;
}

Matrix square(std::vector<double> columnMajor) {
    const auto n = static_cast<unsigned>(std::sqrt(columnMajor.size()));
    Matrix result(n, n);
    result.values = std::move(columnMajor);
    return result;
}

bool storesLowerTriangle(const SparseMatrix& m) {
    return std::ranges::any_of(stored(m), [](const auto& e) { return e.row > e.column; });
}

// Calls `op` with every mix of named and temporary operands.
template <typename Op>
void checkBinary(const SparseMatrix& a, const SparseMatrix& b, double sign, Op op) {
    const Matrix expected = combination(1, valuesOf(a), sign, valuesOf(b));
    for (const auto& mix : test::MIXES) {
        const auto& [aMoved, bMoved] = mix;
        SparseMatrix x = a.copy();
        SparseMatrix y = b.copy();
        SparseMatrix result = test::applied(mix, op, x, y);
        EXPECT_EQ(valuesOf(result), expected);
        EXPECT_EQ(storesLowerTriangle(result), storesLowerTriangle(a) || storesLowerTriangle(b));
        EXPECT_EQ(result.getValue(3, 1), expected(3, 1));  // the views are those of the result
        EXPECT_EQ(stored(x), aMoved ? Entries() : stored(a));
        EXPECT_EQ(stored(y), bMoved && !aMoved ? Entries() : stored(b));
    }
}

template <typename Op>
void checkScaling(const SparseMatrix& a, double factor, Op op) {
    const Matrix expected = combination(factor, valuesOf(a), 0, valuesOf(a));
    SparseMatrix x = a.copy();
    EXPECT_EQ(valuesOf(op(x)), expected);
    EXPECT_EQ(stored(x), stored(a));
    const double* storage = x.getValues();
    SparseMatrix reused = op(std::move(x));
    EXPECT_EQ(valuesOf(reused), expected);
    EXPECT_EQ(reused.getValues(), storage);
}

TEST(SparseAlgebraTest, SumsDifferencesAndScalingInEveryValueCategory) {
    test::Random random;
    for (const auto& [symmetricA, symmetricB] : test::MIXES) {
        const SparseMatrix a = built(sample(9, 9, symmetricA, random), symmetricA);
        const SparseMatrix b = built(sample(9, 9, symmetricB, random), symmetricB);
        checkBinary(a, b, 1, std::plus<>());
        checkBinary(a, b, -1, std::minus<>());
        checkScaling(a, -1, std::negate<>());
        checkScaling(a, -2.5, std::bind_front(std::multiplies<>(), -2.5));
        checkScaling(a, 0.5, [](auto&& m) { return std::forward<decltype(m)>(m) * 0.5; });
    }
}

// A is m x k and B k x n, each half full.
TEST(SparseAlgebraTest, ProductsMatchTheTextbook) {
    const struct {
        unsigned m, k, n;
        bool symmetric;
    } shapes[] = {{1, 1, 1, false}, {6, 5, 4, false}, {3, 8, 11, false},
                  {7, 7, 7, false}, {1, 1, 2, true},  {7, 7, 3, true}};
    test::Random random;
    for (const auto& [m, k, n, symmetric] : shapes) {
        SCOPED_TRACE(testing::Message() << m << " x " << k << " x " << n);
        const Matrix a = sample(m, k, symmetric, random);
        const Matrix b = sample(k, n, false, random);
        const Matrix ab = product(a, b);
        const SparseMatrix A = built(a, symmetric);
        const SparseMatrix B = built(b);
        EXPECT_LT(distance(Matrix(A * dense(b)), ab), 1e-14);
        EXPECT_LT(distance(Matrix(dense(a) * B), ab), 1e-14);
        SparseMatrix computed = A * B;
        EXPECT_LT(distance(valuesOf(computed), ab), 1e-14);
        EXPECT_LT(distance(valuesOf(transposed(computed)), transposed(ab)), 1e-14);
        computed = transposed(computed.copy());
        EXPECT_LT(distance(valuesOf(computed), transposed(ab)), 1e-14);
        EXPECT_NEAR(computed.getValue(n - 1, 0), ab(0, n - 1),
                    1e-14);  // its views are the new ones
        for (const bool transpose : {false, true}) {
            const Matrix op = transpose ? transposed(a) : a;
            const Matrix x(op.columns, n, random);
            const Matrix y(op.rows, n, random);
            const Matrix opX = product(op, x);
            DenseMatrix Y = dense(y);
            A.multiply(transpose, 1.5, 0.25, dense(x), Y);
            EXPECT_LT(distance(Matrix(Y), combination(1.5, opX, 0.25, y)), 1e-14);
            const Matrix scaled(A.multiply(transpose, -2.0, dense(x)));
            EXPECT_LT(distance(scaled, combination(-2, opX, 0, opX)), 1e-14);
        }
    }
}

TEST(SparseAlgebraTest, TransposingInPlaceKeepsAMatrixThatIsNotBuilt) {
    SparseMatrix list = triplets(square({1, 2, 3, 4}), false);
    const Entries before = stored(list);
    list.transpose();
    EXPECT_EQ(list.getMatrixState(), kmat::INIT);
    EXPECT_EQ(stored(list), before);
    SparseMatrix sized(3, 2, false, 0);
    sized.transpose();
    EXPECT_EQ(sized.getRows(), 3U);
    EXPECT_EQ(sized.getMatrixState(), kmat::UNINITIALIZED);
    sized.getValue(2, 1) += 5.0;  // and it can still be filled
    EXPECT_EQ(stored(sized), (Entries{{2, 1, 5.0}}));
}

TEST(SparseAlgebraTest, WhatCholmodRefusesGivesTheEmptyMatrix) {
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
    EXPECT_EQ(transposed(null).getMatrixState(), kmat::DESTROYED);
    EXPECT_EQ(kmat::KmatException::getLastException(), nullptr);
}

// Half full, with a diagonal of 2 of which (4, 4) is not stored; stored as symmetric or not.
class SparseOperatorTest : public testing::TestWithParam<bool> {
protected:
    test::Random random;
    Matrix a = sample(6, 6, GetParam(), random);
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

TEST(SparseAlgebraTest, OperatorsOnAMatrixThatIsNotBuiltDoNothing) {
    SparseMatrix list = triplets(square({1, 2, 3, 4}), false);
    const Entries before = stored(list);
    DenseMatrix sums = test::column({7, 8});
    list.sumRows(sums);
    list.setNullSpace(sums);
    list.symmetrize();
    EXPECT_EQ(test::listOf(sums), (std::vector<double>{7, 8}));
    EXPECT_EQ(stored(list), before);
}

TEST(SparseAlgebraTest, Norms) {
    EXPECT_EQ(built(square({2, 1, 1, -3}), true).norm(0), 4.0);
    const SparseMatrix rows = built(square({0, 5, 1, -3}));
    EXPECT_EQ(rows.norm(0), 8.0);
    EXPECT_EQ(rows.norm(1), 5.0);
}

TEST(SparseAlgebraTest, EqualityIsExactOverThePositionsOfTheFirst) {
    const SparseMatrix m = built(square({2, 1, 1, -3}), true);
    EXPECT_TRUE(m == built(square({2, 1, 1, -3})));
    EXPECT_TRUE(m == built(square({2, 1, 9, 1, -3, 9, 9, 9, 9})));  // the second may be larger
    for (const double other : {0.0, std::nextafter(1.0, 2.0), std::nan("")}) {
        EXPECT_FALSE(m == built(square({2, 1, other, -3}))) << other;
    }
    EXPECT_TRUE(m != SparseMatrix(nullptr));
    SparseMatrix withZero = built(square({2, 1, 0, 0}));
    withZero.getValue(1, 0) = 0.0;
    ASSERT_TRUE(withZero.hasElement(1, 0));
    EXPECT_TRUE(withZero == built(square({2, 0, 0, 0})));
    EXPECT_TRUE(built(square({2, 0, 0, 0})) == withZero);
}

TEST(SparseAlgebraTest, CopiesOfEveryFormAreIndependent) {
    SparseMatrix sources[] = {triplets(square({1, 2, 3, 4}), false),
                              built(square({2, 1, 1, -3}), true), SparseMatrix(3, 2, false, 0),
                              SparseMatrix(nullptr)};
    for (SparseMatrix& source : sources) {
        const Entries before = stored(source);
        SparseMatrix copy = source.copy();
        EXPECT_EQ(copy.getMatrixState(), source.getMatrixState());
        EXPECT_EQ(copy.getRows(), source.getRows());
        EXPECT_EQ(copy.getColumns(), source.getColumns());
        EXPECT_EQ(stored(copy), before);
        source.getValue(0, 0) += 1.0;
        EXPECT_EQ(stored(copy), before);
    }
    EXPECT_EQ(sources[1].copy().getValue(1, 0), 1.0);  // still symmetric
}

TEST(SparseAlgebraTest, ACopiedListGrowsOn) {
    SparseMatrix list(2, 2, false, 3);
    for (int i = 0; i < 3; ++i) list.getValue(1, 1) += 1.0;
    SparseMatrix copy = list.copy();
    for (int i = 0; i < 9; ++i) copy.getValue(0, 1) += 1.0;
    EXPECT_EQ(copy.getNumberOfElements(), 12);
    copy.build();
    EXPECT_EQ(stored(copy), (Entries{{0, 1, 9.0}, {1, 1, 3.0}}));
}

TEST(SparseAlgebraTest, PrintsTripletsOrTheStoredRows) {
    SparseMatrix list(3, 3, false, 0);
    list.getValue(0, 1) += 2.5;
    list.getValue(2, 0) += -1e-20;
    const std::tuple<SparseMatrix, const char*, const char*> cases[] = {
        {SparseMatrix(nullptr), "\n[Empty sparse matrix]\n", ""},
        {std::move(list), "\n( 0, 1 ) =\t2.5\n( 2, 0 ) =\t-1e-20\n", "CHOLMOD triplet"},
        {built(square({2, 1, 1, 3}), true), "\n[2, 1;\n 0, 3];\n", "CHOLMOD sparse"}};
    for (const auto& [matrix, expected, summary] : cases) {
        std::ostringstream out;
        testing::internal::CaptureStdout();
        out << matrix;
        EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr(summary));
        EXPECT_EQ(out.str(), expected);
    }
}

TEST(SparseAlgebraDeathTest, OperandsThatDoNotFitStopTheProcess) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const SparseMatrix A = built(Matrix(DenseMatrix(3, 3, 1.0)), true);
    const SparseMatrix wide = built(Matrix(DenseMatrix(3, 4, 1.0)));
    const SparseMatrix tall = built(Matrix(DenseMatrix(4, 3, 1.0)));
    const SparseMatrix open = triplets(Matrix(DenseMatrix(3, 4, 1.0)), false);
    const std::tuple<const char*, const char*, std::function<void()>> cases[] = {
        {"operator+", "LHS.sparse && RHS.sparse", [&] { A + open; }},  // before the sizes
        {"operator+", "LHS.nrow == RHS.nrow && LHS.ncol == RHS.ncol", [&] { A + wide; }},
        {"operator+", "LHS.nrow == RHS.nrow && LHS.ncol == RHS.ncol", [&] { A.copy() + tall; }},
        {"operator-", "LHS.sparse && RHS.sparse", [&] { A - open.copy(); }},
        {"operator-", "LHS.nrow == RHS.nrow && LHS.ncol == RHS.ncol", [&] { A - wide; }},
        {"operator*", "LHS.sparse && RHS.sparse", [&] { tall* open; }},
        {"operator*", "LHS.ncol == RHS.nrow", [&] { wide* A; }},
        {"operator*", "LHS.sparse", [&] { open * 2.0; }},
        {"operator*", "LHS.sparse", [&] { 2.0 * open.copy(); }},
        {"transpose", "symmetry == ASYMMETRIC", [&] { A.copy().transpose(); }},
        {"transposed", "M.symmetry == ASYMMETRIC", [&] { transposed(A); }},
        {"transposed", "M.symmetry == ASYMMETRIC", [&] { transposed(A.copy()); }}};
    for (const auto& [function, condition, call] : cases) {
        const std::string report =
            std::string(": ") + function + ": Assertion `" + condition + "' failed.\n";
        EXPECT_DEATH(call(),
                     AllOf(HasSubstr(": SparseMatrixLib/sparse_matrix"), HasSubstr(report)));
    }
}

}  // namespace
