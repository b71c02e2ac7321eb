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

// A matrix of the library next to the values that it must have. Half of them are not stored.
struct Sample {
    Matrix values;
    bool symmetric;

    Sample(unsigned rows, unsigned columns, bool symmetric, test::Random& random)
        : values(rows, columns, random), symmetric(symmetric) {
        for (double& v : values.values) v = v > 0.0 ? v : 0.0;
        for (unsigned c = 0; symmetric && c < columns; ++c) {
            for (unsigned r = 0; r < c; ++r) values(c, r) = values(r, c);
        }
    }
    explicit Sample(const Matrix& values, bool symmetric = false)
        : values(values), symmetric(symmetric) {}

    SparseMatrix triplets() const {
        SparseMatrix result(values.rows, values.columns, symmetric, 0);
        for (unsigned c = 0; c < values.columns; ++c) {
            for (unsigned r = 0; r < (symmetric ? c + 1 : values.rows); ++r) {
                if (values(r, c) != 0.0) result.getValue(r, c) += values(r, c);
            }
        }
        return result;
    }
    SparseMatrix built() const {
        SparseMatrix result = triplets();
        result.build();
        return result;
    }
};

Matrix valuesOf(const SparseMatrix& m) { return Matrix(m.toDense()); }

bool storesLowerTriangle(const SparseMatrix& m) {
    for (const auto& entry : m) {
        if (entry.row > entry.column) return true;
    }
    return false;
}

Matrix square(std::vector<double> columnMajor) {
    const auto n = static_cast<unsigned>(std::sqrt(columnMajor.size()));
    Matrix result(n, n);
    result.values = std::move(columnMajor);
    return result;
}

template <typename Op>
void checkBinary(const Sample& a, const Sample& b, double sign, Op op) {
    const Matrix expected = combination(1, a.values, sign, b.values);
    for (const auto& [aMoved, bMoved] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
        SparseMatrix x = a.built();
        SparseMatrix y = b.built();
        SparseMatrix result = aMoved && bMoved ? op(std::move(x), std::move(y))
                              : aMoved         ? op(std::move(x), y)
                              : bMoved         ? op(x, std::move(y))
                                               : op(x, y);
        EXPECT_EQ(valuesOf(result), expected);
        EXPECT_NE(storesLowerTriangle(result), a.symmetric && b.symmetric);
        EXPECT_EQ(result.getValue(3, 1), expected(3, 1));  // the views are those of the result
        EXPECT_EQ(x.getMatrixState(), aMoved ? kmat::DESTROYED : kmat::BUILT);
        EXPECT_EQ(y.getMatrixState(), bMoved && !aMoved ? kmat::DESTROYED : kmat::BUILT);
        EXPECT_TRUE(aMoved || valuesOf(x) == a.values);
        EXPECT_TRUE(bMoved || valuesOf(y) == b.values);
    }
}

template <typename Op>
void checkScaling(const Sample& a, double factor, Op op) {
    const Matrix expected = combination(factor, a.values, 0, a.values);
    SparseMatrix x = a.built();
    EXPECT_EQ(valuesOf(op(x)), expected);
    EXPECT_EQ(valuesOf(x), a.values);
    const double* storage = x.getValues();
    SparseMatrix reused = op(std::move(x));
    EXPECT_EQ(valuesOf(reused), expected);
    EXPECT_EQ(reused.getValues(), storage);
}

TEST(SparseAlgebraTest, SumsDifferencesAndScalingInEveryValueCategory) {
    test::Random random;
    for (const auto& [symmetricA, symmetricB] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
        const Sample a(9, 9, symmetricA, random);
        const Sample b(9, 9, symmetricB, random);
        checkBinary(a, b, 1, std::plus<>());
        checkBinary(a, b, -1, std::minus<>());
        checkScaling(a, -1, std::negate<>());
        checkScaling(a, -2.5, std::bind_front(std::multiplies<>(), -2.5));
        checkScaling(a, 0.5, [](auto&& m) { return std::forward<decltype(m)>(m) * 0.5; });
    }
    checkBinary(Sample(7, 3, false, random), Sample(7, 3, false, random), 1, std::plus<>());
}

TEST(SparseAlgebraTest, ProductsMatchTheTextbook) {
    constexpr unsigned sizes[][3] = {{1, 1, 1}, {6, 5, 4}, {3, 8, 11}, {7, 7, 7}};
    test::Random random;
    for (const auto& [m, k, n] : sizes) {
        for (const bool symmetric : {false, true}) {
            if (symmetric && m != k) continue;
            const Sample a(m, k, symmetric, random);
            const Sample b(k, n, symmetric, random);
            const SparseMatrix A = a.built();
            const Matrix ab = product(a.values, b.values);
            const SparseMatrix AB = A * b.built();
            EXPECT_LT(distance(valuesOf(AB), ab), 1e-14);
            EXPECT_LT(distance(valuesOf(transposed(AB)), transposed(ab)), 1e-14);  // unsymmetric
            EXPECT_LT(distance(Matrix(A * b.values.to<DenseMatrix>()), ab), 1e-14);
            EXPECT_LT(distance(Matrix(a.values.to<DenseMatrix>() * b.built()), ab), 1e-14);

            for (const bool transpose : {false, true}) {
                const Matrix op = transpose ? transposed(a.values) : a.values;
                const Matrix x(op.columns, n, random);
                const Matrix y(op.rows, n, random);
                const Matrix opX = product(op, x);
                const DenseMatrix X = x.to<DenseMatrix>();
                DenseMatrix Y = y.to<DenseMatrix>();
                A.multiply(transpose, 1.5, 0.25, X, Y);
                EXPECT_LT(distance(Matrix(Y), combination(1.5, opX, 0.25, y)), 1e-14);
                const Matrix scaled(A.multiply(transpose, -2.0, X));
                EXPECT_LT(distance(scaled, combination(-2, opX, 0, opX)), 1e-14);
            }
        }
    }
}

TEST(SparseAlgebraTest, WhatCholmodRefusesGivesTheEmptyMatrix) {
    test::Random random;
    const Sample a(2, 3, false, random);
    const SparseMatrix null(nullptr);
    const DenseMatrix X(2, 2, 1.0);
    for (const SparseMatrix* A : {&null, static_cast<const SparseMatrix*>(nullptr)}) {
        const SparseMatrix built = a.built();
        const SparseMatrix& refused = A ? *A : built;  // X has too few rows for it
        kmat::errorHandler(0, "", 0, "");
        EXPECT_EQ(Matrix(refused * X), Matrix(0, 0));
        EXPECT_NE(kmat::ConfigSingleton::getLastError(), "");
        EXPECT_EQ(Matrix(refused.multiply(false, 1.0, X)), Matrix(0, 0));
        EXPECT_EQ(Matrix(DenseMatrix(3, 4) * refused), Matrix(0, 0));
    }
    EXPECT_EQ(transposed(null).getMatrixState(), kmat::DESTROYED);
    EXPECT_EQ(Matrix(null.toDense()), Matrix(0, 0));
    EXPECT_EQ(kmat::KmatException::getLastException(), nullptr);
}

TEST(SparseAlgebraTest, TransposesSymmetrisesAndCopies) {
    test::Random random;
    const Sample a(5, 8, false, random);
    const Matrix expected = transposed(a.values);
    const SparseMatrix named = a.built();
    SparseMatrix inPlace = a.built();
    inPlace.transpose();
    for (const SparseMatrix& t : {transposed(named), transposed(a.built()), std::move(inPlace)}) {
        EXPECT_EQ(valuesOf(t), expected);
        EXPECT_EQ(t.getRows(), 8U);
        EXPECT_EQ(t.getNumberOfElements(), named.getNumberOfElements());
        EXPECT_TRUE(t.hasElement(0, 0) == (a.values(0, 0) != 0.0));
    }
    EXPECT_EQ(valuesOf(named), a.values);

    const Sample symmetric(6, 6, true, random);
    SparseMatrix full = Sample(symmetric.values).built();
    EXPECT_TRUE(storesLowerTriangle(full));
    full.symmetrize();
    EXPECT_FALSE(storesLowerTriangle(full));
    EXPECT_EQ(valuesOf(full), symmetric.values);
    EXPECT_EQ(full.getValue(5, 1), symmetric.values(1, 5));

    const auto checkCopy = [](SparseMatrix&& m) {
        SparseMatrix copy = m.copy();
        EXPECT_EQ(copy.getMatrixState(), m.getMatrixState());
        EXPECT_EQ(copy.getRows(), m.getRows());
        EXPECT_TRUE(std::ranges::equal(copy, m));
        m.getValue(0, 0) += 1.0;  // shows in the source alone
        EXPECT_EQ(m.getNumberOfElements() > 0, !std::ranges::equal(copy, m));
    };
    checkCopy(Sample(square({1, 2, 3, 4})).triplets());
    checkCopy(Sample(square({1, 2, 2, 4}), true).built());
    checkCopy({3, 2, false, 0});
    checkCopy(SparseMatrix(nullptr));
}

TEST(SparseAlgebraTest, FixesDegreesOfFreedomSumsRowsAndDropsSmallEntries) {
    test::Random random;
    for (const bool symmetric : {false, true}) {
        Sample a(6, 6, symmetric, random);
        for (unsigned i = 0; i < 6; ++i) a.values(i, i) = i == 4 ? 0.0 : 2.0;  // (4, 4) is missing
        const double fixed[] = {1, 0, 0.5, 1, 0, 1};
        Matrix expected = a.values;
        Matrix sums(6, 1);
        Matrix kept = a.values;
        for (unsigned i = 0; i < 36; ++i) {
            sums(i % 6, 0) += a.values.values[i];
            expected.values[i] *= fixed[i % 6] * fixed[i / 6];
            if (kept.values[i] <= a.values(3, 2)) kept.values[i] = 0.0;
        }
        expected(1, 1) = 1.0;
        DenseMatrix column(6, 1);
        column.set(fixed);
        SparseMatrix m = a.built();
        m.setNullSpace(column);
        EXPECT_EQ(valuesOf(m), expected);

        column.fill(0.25);  // is added to
        a.built().sumRows(column);
        EXPECT_LT(
            distance(Matrix(column), combination(1, sums, 0.25, Matrix(DenseMatrix(6, 1, 1.0)))),
            1e-15);

        m = a.built();
        m.dropSmallEntries(a.values(3, 2));  // and what equals the tolerance
        EXPECT_EQ(valuesOf(m), kept);
        EXPECT_EQ(m.hasElement(3, 2), kept(3, 2) > 0.0);
        EXPECT_EQ(m.getValue(3, 3), 2.0);
    }
}

TEST(SparseAlgebraTest, ComparesExactlyAndTakesNorms) {
    const SparseMatrix m = Sample(square({2, 1, 1, -3}), true).built();
    EXPECT_EQ(m.norm(0), 4.0);
    EXPECT_EQ(m.norm(1), 4.0);
    const SparseMatrix rows = Sample(square({0, 5, 1, -3})).built();
    EXPECT_EQ(rows.norm(0), 8.0);
    EXPECT_EQ(rows.norm(1), 5.0);

    EXPECT_TRUE(m == m && m == Sample(square({2, 1, 1, -3})).built());
    EXPECT_TRUE(m == Sample(square({2, 1, 9, 1, -3, 9, 9, 9, 9})).built());  // B may be larger
    for (const double other : {0.0, std::nextafter(1.0, 2.0), NAN}) {
        EXPECT_TRUE(m != Sample(square({2, 1, other, -3})).built()) << other;
    }
    SparseMatrix stored = Sample(square({2, 1, 0, 0})).built();
    stored.getValue(1, 0) = 0.0;
    EXPECT_TRUE(stored == Sample(square({2, 0, 0, 0})).built());
    EXPECT_TRUE(SparseMatrix(nullptr) == m);
}

TEST(SparseAlgebraTest, PrintsTripletsOrTheStoredRows) {
    SparseMatrix triplets(3, 3, false, 0);
    triplets.getValue(0, 1) += 2.5;
    triplets.getValue(2, 0) += -1e-20;
    const std::tuple<SparseMatrix, const char*, const char*> cases[] = {
        {SparseMatrix(nullptr), "\n[Empty sparse matrix]\n", ""},
        {SparseMatrix(2, 2, true, 0), "\n[Empty sparse matrix]\n", ""},
        {std::move(triplets), "\n( 0, 1 ) =\t2.5\n( 2, 0 ) =\t-1e-20\n", "CHOLMOD triplet"},
        {Sample(square({2, 1, 1, 3}), true).built(), "\n[2, 1;\n 0, 3];\n", "CHOLMOD sparse"}};
    for (const auto& [matrix, expected, summary] : cases) {
        std::ostringstream out;
        testing::internal::CaptureStdout();
        out << matrix;
        const std::string printed = testing::internal::GetCapturedStdout();
        EXPECT_EQ(out.str(), expected);
        EXPECT_EQ(printed.empty(), *summary == '\0');
        EXPECT_THAT(printed, testing::HasSubstr(summary));
    }
}

TEST(SparseAlgebraDeathTest, OperandsThatDoNotFitStopTheProcess) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const SparseMatrix A(Sample(Matrix(DenseMatrix(3, 3, 1.0))).built());
    const SparseMatrix wide(Sample(Matrix(DenseMatrix(3, 4, 1.0))).built());
    const SparseMatrix tall(Sample(Matrix(DenseMatrix(4, 3, 1.0))).built());
    const SparseMatrix open(Sample(Matrix(DenseMatrix(3, 4, 1.0))).triplets());
    const SparseMatrix upper(Sample(square({1, 2, 2, 1}), true).built());
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
        {"transpose", "symmetry == ASYMMETRIC", [&] { upper.copy().transpose(); }},
        {"transposed", "M.symmetry == ASYMMETRIC", [&] { transposed(upper); }},
        {"transposed", "M.symmetry == ASYMMETRIC", [&] { transposed(upper.copy()); }}};
    for (const auto& [function, condition, call] : cases) {
        const std::string report =
            std::string(": ") + function + ": Assertion `" + condition + "' failed.\n";
        EXPECT_DEATH(call(), testing::AllOf(testing::HasSubstr(": SparseMatrixLib/sparse_matrix"),
                                            testing::HasSubstr(report)));
    }
}

}  // namespace
