#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "kmat_exception.h"
#include "sparse_matrix.h"
#include "test_support.h"

namespace {

using kmat::DenseMatrix;
using kmat::SparseMatrix;
using test::combination;
using test::distance;
using test::Matrix;
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

SparseMatrix triplets(const Matrix& m, bool symmetric) {
    SparseMatrix result(m.rows, m.columns, symmetric, 0);
    for (unsigned c = 0; c < m.columns; ++c) {
        for (unsigned r = 0; r < (symmetric ? c + 1 : m.rows); ++r) {
            if (m(r, c) != 0.0) result.getValue(r, c) += m(r, c);
        }
    }
    return result;
}

SparseMatrix built(const Matrix& m, bool symmetric = false) {
    SparseMatrix result = triplets(m, symmetric);
    result.build();
    return result;
}

Matrix valuesOf(const SparseMatrix& m) { return Matrix(m.toDense()); }

std::vector<kmat::SparseEntry> stored(const SparseMatrix& m) {
    std::vector<kmat::SparseEntry> entries;
    for (const auto& entry : m) entries.push_back(entry);
    return entries;
}

bool storesLowerTriangle(const SparseMatrix& m) {
    return std::ranges::any_of(stored(m), [](const auto& e) { return e.row > e.column; });
}

// Calls `op` with every mix of named and temporary operands.
template <typename Op>
void checkBinary(const SparseMatrix& a, const SparseMatrix& b, double sign, Op op) {
    const Matrix expected = combination(1, valuesOf(a), sign, valuesOf(b));
    for (const auto& [aMoved, bMoved] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
        SparseMatrix x = a.copy();
        SparseMatrix y = b.copy();
        const SparseMatrix* const left[] = {&x, &y};
        SparseMatrix result = aMoved && bMoved ? op(std::move(x), std::move(y))
                              : aMoved         ? op(std::move(x), y)
                              : bMoved         ? op(x, std::move(y))
                                               : op(x, y);
        EXPECT_EQ(valuesOf(result), expected);
        EXPECT_EQ(storesLowerTriangle(result), storesLowerTriangle(a) || storesLowerTriangle(b));
        EXPECT_EQ(result.getValue(3, 1), expected(3, 1));  // the views are those of the result
        using Entries = std::vector<kmat::SparseEntry>;    // of what the operands are left with
        EXPECT_EQ(stored(*left[0]), aMoved ? Entries() : stored(a));
        EXPECT_EQ(stored(*left[1]), bMoved && !aMoved ? Entries() : stored(b));
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
    for (const auto& [symmetricA, symmetricB] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
        const SparseMatrix a = built(sample(9, 9, symmetricA, random), symmetricA);
        const SparseMatrix b = built(sample(9, 9, symmetricB, random), symmetricB);
        checkBinary(a, b, 1, std::plus<>());
        checkBinary(a, b, -1, std::minus<>());
        checkScaling(a, -1, std::negate<>());
        checkScaling(a, -2.5, std::bind_front(std::multiplies<>(), -2.5));
        checkScaling(a, 0.5, [](auto&& m) { return std::forward<decltype(m)>(m) * 0.5; });
    }
}

TEST(SparseAlgebraTest, ProductsAndTransposesMatchTheTextbook) {
    constexpr unsigned sizes[][3] = {{1, 1, 1}, {6, 5, 4}, {3, 8, 11}, {7, 7, 7}};
    test::Random random;
    for (const auto& [m, k, n] : sizes) {
        for (const bool symmetric : {m == k, false}) {
            const Matrix a = sample(m, k, symmetric, random);
            const Matrix b = sample(k, n, false, random);
            const Matrix ab = product(a, b);
            const SparseMatrix A = built(a, symmetric);
            const SparseMatrix B = built(b);
            SparseMatrix AB = A * B;
            EXPECT_LT(distance(valuesOf(AB), ab), 1e-14);
            EXPECT_LT(distance(Matrix(A * b.to<DenseMatrix>()), ab), 1e-14);
            EXPECT_LT(distance(Matrix(a.to<DenseMatrix>() * B), ab), 1e-14);
            EXPECT_LT(distance(valuesOf(transposed(AB)), transposed(ab)), 1e-14);  // unsymmetric
            EXPECT_LT(distance(valuesOf(transposed(AB.copy())), transposed(ab)), 1e-14);
            AB.transpose();
            EXPECT_LT(distance(valuesOf(AB), transposed(ab)), 1e-14);
            EXPECT_NEAR(AB.getValue(n - 1, 0), ab(0, n - 1), 1e-14);

            for (const bool transpose : {false, true}) {
                const Matrix op = transpose ? transposed(a) : a;
                const Matrix x(op.columns, n, random);
                const Matrix y(op.rows, n, random);
                const Matrix opX = product(op, x);
                DenseMatrix Y = y.to<DenseMatrix>();
                A.multiply(transpose, 1.5, 0.25, x.to<DenseMatrix>(), Y);
                EXPECT_LT(distance(Matrix(Y), combination(1.5, opX, 0.25, y)), 1e-14);
                const Matrix scaled(A.multiply(transpose, -2.0, x.to<DenseMatrix>()));
                EXPECT_LT(distance(scaled, combination(-2, opX, 0, opX)), 1e-14);
            }
        }
    }
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

TEST(SparseAlgebraTest, FixesDegreesOfFreedomSumsRowsDropsAndSymmetrises) {
    test::Random random;
    for (const bool symmetric : {false, true}) {
        Matrix a = sample(6, 6, symmetric, random);
        for (unsigned i = 0; i < 6; ++i) a(i, i) = i == 4 ? 0.0 : 2.0;  // (4, 4) is not stored
        const double fixed[] = {1, 0, 0.5, 1, 0, 1};
        Matrix restrained = a;
        Matrix sums(DenseMatrix(6, 1, 0.25));  // is added to
        Matrix kept = a;
        for (unsigned i = 0; i < 36; ++i) {
            sums(i % 6, 0) += a.values[i];
            restrained.values[i] *= fixed[i % 6] * fixed[i / 6];
            if (kept.values[i] <= a(3, 2)) kept.values[i] = 0.0;
        }
        restrained(1, 1) = 1.0;
        DenseMatrix column(6, 1);
        column.set(fixed);
        SparseMatrix m = built(a, symmetric);
        m.setNullSpace(column);
        EXPECT_EQ(valuesOf(m), restrained);

        column.fill(0.25);
        m = built(a, symmetric);
        m.sumRows(column);
        EXPECT_LT(distance(Matrix(column), sums), 1e-15);
        m.dropSmallEntries(a(3, 2));  // and what equals the tolerance
        EXPECT_EQ(valuesOf(m), kept);
        EXPECT_EQ(m.hasElement(3, 2), kept(3, 2) > 0.0);
        EXPECT_EQ(m.getValue(3, 3), 2.0);

        m = built(a);
        m.symmetrize();
        EXPECT_FALSE(storesLowerTriangle(m));
        EXPECT_EQ(m.getValue(5, 1), a(1, 5));
        EXPECT_EQ(valuesOf(m) == a, symmetric);
    }
}

TEST(SparseAlgebraTest, CopiesComparesAndTakesNorms) {
    const SparseMatrix m = built(square({2, 1, 1, -3}), true);
    const SparseMatrix rows = built(square({0, 5, 1, -3}));
    EXPECT_EQ(m.norm(0) + m.norm(1), 8.0);
    EXPECT_EQ(rows.norm(0), 8.0);
    EXPECT_EQ(rows.norm(1), 5.0);

    EXPECT_TRUE(m == m && m == built(square({2, 1, 1, -3})));
    EXPECT_TRUE(m == built(square({2, 1, 9, 1, -3, 9, 9, 9, 9})));  // B may be larger
    for (const double other : {0.0, std::nextafter(1.0, 2.0), std::nan("")}) {
        EXPECT_TRUE(m != built(square({2, 1, other, -3}))) << other;
    }
    SparseMatrix withZero = built(square({2, 1, 0, 0}));
    withZero.getValue(1, 0) = 0.0;
    EXPECT_TRUE(withZero == built(square({2, 0, 0, 0})));
    EXPECT_TRUE(SparseMatrix(nullptr) == m);

    SparseMatrix sources[] = {triplets(square({1, 2, 3, 4}), false), m.copy(),
                              SparseMatrix(3, 2, false, 0), SparseMatrix(nullptr)};
    for (SparseMatrix& source : sources) {
        const SparseMatrix copy = source.copy();
        EXPECT_EQ(copy.getMatrixState(), source.getMatrixState());
        EXPECT_EQ(copy.getRows(), source.getRows());
        EXPECT_EQ(stored(copy), stored(source));
        source.getValue(0, 0) += 1.0;  // shows in the source alone
        EXPECT_EQ(stored(copy) != stored(source), source.getNumberOfElements() > 0);
    }
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
