#include "dense_matrix.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "support/matrices.h"

namespace {

using kmat::DenseMatrix;
using test::combination;
using test::dense;
using test::distance;
using test::Matrix;

constexpr std::pair<unsigned, unsigned> SHAPES[] = {{1, 1}, {4, 1}, {1, 5}, {3, 4}, {37, 23}};

// Calls `op` with every mix of named and temporary operands. The result must be `expected`, in the
// storage of the first temporary, or in new storage with the named operands untouched.
template <typename Op>
void checkBinary(const Matrix& a, const Matrix& b, const Matrix& expected, Op op) {
    for (const auto& mix : test::MIXES) {
        const auto& [aMoved, bMoved] = mix;
        DenseMatrix x = dense(a);
        DenseMatrix y = dense(b);
        const double* const storage[] = {x.begin(), y.begin()};
        const DenseMatrix result = test::applied(mix, op, x, y);
        EXPECT_EQ(Matrix(result), expected);
        EXPECT_EQ(result.begin() == storage[0], aMoved);
        EXPECT_EQ(result.begin() == storage[1], bMoved && !aMoved);
        EXPECT_TRUE(aMoved || Matrix(x) == a);
        EXPECT_TRUE(bMoved || Matrix(y) == b);
    }
}

template <typename Op>
void checkUnary(const Matrix& a, const Matrix& expected, Op op) {
    DenseMatrix x = dense(a);
    const double* storage = x.begin();
    EXPECT_EQ(Matrix(op(x)), expected);
    EXPECT_EQ(Matrix(x), a);
    const DenseMatrix reused = op(std::move(x));
    EXPECT_EQ(Matrix(reused), expected);
    EXPECT_EQ(reused.begin(), storage);
}

TEST(DenseMatrixTest, OperatorsComputeAndReuseTheStorageOfTemporaries) {
    test::Random random;
    for (const auto& [rows, columns] : SHAPES) {
        const Matrix a(rows, columns, random);
        const Matrix b(rows, columns, random);
        const Matrix sum = combination(1, a, 1, b);
        const Matrix difference = combination(1, a, -1, b);
        const Matrix scaled = combination(-2.5, a, 0, a);
        checkBinary(a, b, sum, std::plus<>());
        checkBinary(a, b, difference, std::minus<>());
        checkUnary(a, combination(-1, a, 0, a), std::negate<>());
        checkUnary(a, scaled, std::bind_front(std::multiplies<>(), -2.5));
        checkUnary(a, scaled, [](auto&& m) { return std::forward<decltype(m)>(m) * -2.5; });
    }
}

TEST(DenseMatrixTest, AssignmentOperatorsWorkInPlaceAlsoWithThemselves) {
    DenseMatrix x = test::column({5, 8});
    const double* const storage = x.begin();
    EXPECT_EQ(test::listOf(x *= 0.5), (std::vector<double>{2.5, 4}));
    EXPECT_EQ(test::listOf(x += x), (std::vector<double>{5, 8}));
    EXPECT_EQ(test::listOf(x -= x), (std::vector<double>{0, 0}));
    EXPECT_EQ(x.begin(), storage);
}

TEST(DenseMatrixTest, ProductsMatchTheTextbookForEveryTranspositionAndZeroSize) {
    constexpr unsigned sizes[][3] = {{1, 1, 1}, {3, 1, 4}, {1, 3, 4}, {4, 5, 3}, {31, 18, 45},
                                     {0, 2, 3}, {2, 0, 3}, {2, 3, 0}, {2, 1, 0}, {0, 1, 2}};
    test::Random random;
    for (const auto& [m, n, k] : sizes) {
        SCOPED_TRACE(testing::Message() << m << " " << n << " " << k);
        const Matrix a(m, k, random);
        const Matrix b(k, n, random);
        const Matrix c(m, n, random);
        const Matrix ab = product(a, b);
        EXPECT_LT(distance(Matrix(dense(a) * dense(b)), ab), 1e-13);
        for (const auto& [tA, tB] : test::MIXES) {
            const DenseMatrix l = dense(tA ? transposed(a) : a);
            const DenseMatrix r = dense(tB ? transposed(b) : b);
            DenseMatrix sum = dense(c);
            l.multiply(tA, tB, 1.5, 0.25, r, sum);
            EXPECT_LT(distance(Matrix(sum), combination(1.5, ab, 0.25, c)), 1e-13);
            sum.fill(NAN);  // beta 0 overwrites, whatever was there
            l.multiply(tA, tB, 1.0, 0.0, r, sum);
            EXPECT_LT(distance(Matrix(sum), ab), 1e-13);
            const Matrix scaled(l.multiply(tA, tB, -2.0, r));
            EXPECT_LT(distance(scaled, combination(-2, ab, 0, ab)), 1e-13);
        }
    }
}

// More of them than one step of any unrolled loop.
TEST(DenseMatrixTest, ElementsAreMultipliedDividedAddedTransposedAndReduced) {
    test::Random random;
    const Matrix a(37, 23, random);
    const Matrix b(37, 23, random);
    Matrix products = a;
    Matrix quotients = a;
    double dot = 0.0;
    double squares = 0.0;
    for (size_t i = 0; i < a.values.size(); ++i) {
        products.values[i] *= b.values[i];
        quotients.values[i] /= b.values[i];
        dot += a.values[i] * b.values[i];
        squares += a.values[i] * a.values[i];
    }
    const DenseMatrix x = dense(a);
    DenseMatrix y = dense(b);
    EXPECT_NEAR(x.dot(y), dot, 1e-12);
    EXPECT_NEAR(x.length(), std::sqrt(squares), 1e-12);
    DenseMatrix result = x.copy();
    result.elemMultiply(y);
    EXPECT_EQ(Matrix(result), products);
    x.elemDivide(y, result);
    EXPECT_EQ(Matrix(result), quotients);
    EXPECT_EQ(Matrix(transposed(x)), transposed(a));
    EXPECT_EQ(Matrix(transposed(x.copy())), transposed(a));
    EXPECT_EQ(Matrix(x), a);
    x.multiplyAddTo(-2.0, y);
    EXPECT_LT(distance(Matrix(y), combination(-2, a, 1, b)), 1e-15);
}

TEST(DenseMatrixTest, Norms) {
    Matrix a(2, 3);
    a.values = {1, -2, 3, 4, 0, -6};  // rows 1 3 0 and -2 4 -6
    EXPECT_EQ(dense(a).norm(0), 12.0);
    EXPECT_EQ(dense(a).norm(1), 7.0);
    EXPECT_EQ(dense(a).norm(2), -1.0);  // of one column only
    EXPECT_EQ(test::column({3, -4}).norm(2), 5.0);
}

TEST(DenseMatrixTest, FillsWithAnyValue) {
    EXPECT_EQ(test::listOf(DenseMatrix(1, 2, 2.5)), (std::vector{2.5, 2.5}));
    DenseMatrix m(2, 3, NAN);  // unwritten, but of full size
    ASSERT_EQ(m.end() - m.begin(), 6);
    m.fill(NAN);
    EXPECT_TRUE(test::isUnset(m));
    m.zero();
    EXPECT_EQ(Matrix(m), Matrix(2, 3));
    EXPECT_TRUE(test::isUnset(kmat::undefinedVector(3)));
    EXPECT_EQ(kmat::undefinedVector(3).getRows(), 3U);
}

TEST(DenseMatrixTest, TakesAndGivesNumbersColumnByColumn) {
    DenseMatrix m(2, 3);
    const std::vector<float> floats = {0.1F, -2.0F, 3e30F, 4.0F, 5.0F, 6.0F};
    std::vector<float> back(6);
    m.set(floats.data());
    m.get(back.data());
    EXPECT_EQ(back, floats);
    EXPECT_EQ(m(0, 1), static_cast<double>(3e30F));
    EXPECT_EQ(m(1, 2), 6.0);
    std::vector<double> doubles(6);
    m.get(doubles.data());
    EXPECT_EQ(doubles, std::vector<double>(floats.begin(), floats.end()));
}

TEST(DenseMatrixTest, EqualityIsExact) {
    const DenseMatrix m(2, 3, 6.0);
    DenseMatrix other = m.copy();
    EXPECT_TRUE(m == other);
    other(1, 2) = std::nextafter(6.0, 7.0);
    EXPECT_FALSE(m == other);
    other(1, 2) = NAN;
    EXPECT_FALSE(other == other);
    EXPECT_FALSE(m == DenseMatrix(3, 2, 6.0));
    EXPECT_TRUE(DenseMatrix(0, 3) == DenseMatrix(0, 3));
    EXPECT_FALSE(DenseMatrix(0, 3) == DenseMatrix(3, 0));
    EXPECT_FALSE(DenseMatrix(3, 0) == DenseMatrix(3, 1));
}

TEST(DenseMatrixTest, SparseFormHoldsWhatIsNotZero) {
    DenseMatrix m(2, 3, 0.0);
    m(0, 1) = 2.0;
    EXPECT_EQ(test::stored(m.toSparse()), (test::Entries{{0, 1, 2.0}}));
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
    for (const DenseMatrix* empty : {&x, &z}) {
        EXPECT_EQ(empty->begin(), nullptr);
        EXPECT_EQ(empty->getRows(), 0U);
        EXPECT_EQ(empty->getColumns(), 0U);
    }
}

TEST(DenseMatrixTest, EmptyMatricesAreSafeToUse) {
    DenseMatrix empty(nullptr);
    EXPECT_EQ(empty.begin(), nullptr);
    empty.fill(1.0);
    empty.zero();
    empty.transpose();
    EXPECT_EQ(Matrix(empty + empty * empty), Matrix(0, 0));
    EXPECT_EQ(empty.length(), 0.0);
}

// Of sums only the numbers of values must agree.
TEST(DenseMatrixDeathTest, SumsOfDifferentSizesStopTheProcess) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const DenseMatrix small(2, 2);
    const DenseMatrix large(2, 3);
    const std::string report =
        "SparseMatrixLib/dense_matrix.cpp:[0-9]+: operator\\+=: Assertion `size\\(\\) == "
        "RHS\\.size\\(\\)' failed";
    EXPECT_DEATH(large + small, report);
    EXPECT_DEATH(small + large, report);
    EXPECT_DEATH(large - small, report);
    EXPECT_DEATH(small - large.copy(), report);
    EXPECT_EQ((large + transposed(large)).getColumns(), 2U);  // reuses the temporary
}

TEST(DenseMatrixTest, PrintsRowsBetweenBracketsAfterASummary) {
    DenseMatrix square(2, 2, 2.0);
    square(1, 0) = 1e20;
    square(0, 1) = -1.23456789;
    const std::pair<DenseMatrix, const char*> cases[] = {
        {std::move(square), "\n[2, -1.23457;\n 1e+20, 2];\n"},
        {DenseMatrix(0, 2), "\n[];\n"},
        {DenseMatrix(nullptr), "\n[Empty dense matrix]\n"}};
    for (const auto& [matrix, expected] : cases) {
        std::ostringstream out;
        testing::internal::CaptureStdout();
        out << matrix;
        const std::string summary = testing::internal::GetCapturedStdout();
        EXPECT_EQ(out.str(), expected);
        EXPECT_EQ(summary.find("CHOLMOD dense") != std::string::npos, matrix.begin() != nullptr);
    }
}

}  // namespace
