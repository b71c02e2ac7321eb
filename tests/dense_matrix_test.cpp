#include "dense_matrix.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "sparse_matrix.h"
#include "test_support.h"

namespace {

using kmat::DenseMatrix;
using test::combination;
using test::distance;
using test::Matrix;

constexpr std::pair<unsigned, unsigned> SHAPES[] = {{1, 1}, {4, 1}, {1, 5}, {3, 4}, {37, 23}};

DenseMatrix dense(const Matrix& m) { return m.to<DenseMatrix>(); }

// Calls `op` with every mix of named and temporary operands. The result must be `expected`, in the
// storage of the first temporary, or in new storage with the named operands untouched.
template <typename Op>
void checkBinary(const Matrix& a, const Matrix& b, const Matrix& expected, Op op) {
    for (const auto& [aMoved, bMoved] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
        DenseMatrix x = dense(a);
        DenseMatrix y = dense(b);
        const double* const storage[] = {x.begin(), y.begin()};
        const DenseMatrix result = aMoved && bMoved ? op(std::move(x), std::move(y))
                                   : aMoved         ? op(std::move(x), y)
                                   : bMoved         ? op(x, std::move(y))
                                                    : op(x, y);
        EXPECT_EQ(Matrix(result), expected);
        EXPECT_EQ(result.begin() == storage[0], aMoved);
        EXPECT_EQ(result.begin() == storage[1], bMoved && !aMoved);
        EXPECT_TRUE((aMoved || Matrix(x) == a) && (bMoved || Matrix(y) == b));
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

        DenseMatrix x = dense(a);
        const DenseMatrix y = dense(b);
        const double* storage = x.begin();
        EXPECT_EQ(Matrix(x += y), sum);
        x.set(a.values.data());
        EXPECT_EQ(Matrix(x -= y), difference);
        x.set(a.values.data());
        EXPECT_EQ(Matrix(x *= 0.5), combination(0.5, a, 0, a));
        EXPECT_EQ(Matrix(x += x), a);
        EXPECT_EQ(Matrix(x -= x), Matrix(rows, columns));
        EXPECT_EQ(x.begin(), storage);
    }
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
        for (const auto& [tA, tB] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
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

TEST(DenseMatrixTest, ElementWiseWorkReductionsNormsAndTransposes) {
    test::Random random;
    for (const auto& [rows, columns] : SHAPES) {
        const Matrix a(rows, columns, random);
        const Matrix b(rows, columns, random);
        Matrix products = a;
        Matrix quotients = a;
        Matrix rowSums(rows, 1);
        Matrix columnSums(columns, 1);
        double dot = 0.0;
        double squares = 0.0;
        for (size_t i = 0; i < a.values.size(); ++i) {
            dot += products.values[i] *= b.values[i];
            quotients.values[i] /= b.values[i];
            squares += a.values[i] * a.values[i];
            rowSums.values[i % rows] += std::fabs(a.values[i]);
            columnSums.values[i / rows] += std::fabs(a.values[i]);
        }
        const DenseMatrix x = dense(a);
        DenseMatrix y = dense(b);
        EXPECT_NEAR(x.dot(y), dot, 1e-12);
        EXPECT_NEAR(x.length(), std::sqrt(squares), 1e-12);
        EXPECT_NEAR(x.norm(0), distance(rowSums, Matrix(rows, 1)), 1e-12);
        EXPECT_NEAR(x.norm(1), distance(columnSums, Matrix(columns, 1)), 1e-12);
        EXPECT_NEAR(x.norm(2), columns == 1 ? std::sqrt(squares) : -1.0, 1e-12);
        EXPECT_EQ(Matrix(transposed(x)), transposed(a));
        EXPECT_EQ(Matrix(transposed(x.copy())), transposed(a));

        DenseMatrix result(rows, columns, 7.0);
        x.elemMultiply(y, result);
        EXPECT_EQ(Matrix(result), products);
        x.elemDivide(y, result);
        EXPECT_EQ(Matrix(result), quotients);
        (result = x.copy()).elemMultiply(y);
        EXPECT_EQ(Matrix(result), products);
        (result = x.copy()).elemDivide(y);
        EXPECT_EQ(Matrix(result), quotients);
        x.multiplyAddTo(-2.0, y);
        EXPECT_LT(distance(Matrix(y), combination(-2, a, 1, b)), 1e-15);
    }
}

TEST(DenseMatrixTest, CarriesAndComparesValuesExactly) {
    DenseMatrix m(2, 3, NAN);  // unwritten, but of full size
    ASSERT_EQ(m.end() - m.begin(), 6);
    m.fill(NAN);
    EXPECT_TRUE(std::all_of(m.begin(), m.end(), [](double v) { return std::isnan(v); }));
    m.zero();
    EXPECT_EQ(Matrix(m), Matrix(2, 3));
    EXPECT_EQ(Matrix(DenseMatrix(1, 1, 2.5)).values, std::vector{2.5});
    const std::vector<float> floats = {0.1F, -2.0F, 3e30F, 4.0F, 5.0F, 6.0F};
    std::vector<float> back(6);
    m.set(floats.data());
    m.get(back.data());
    EXPECT_EQ(back, floats);
    EXPECT_EQ(m(0, 1), static_cast<double>(3e30F));  // column by column
    EXPECT_EQ(m(1, 2), 6.0);

    DenseMatrix changed = m.copy();
    EXPECT_TRUE(m == changed);
    changed(1, 2) = std::nextafter(6.0, 7.0);
    EXPECT_TRUE(m != changed);
    changed(1, 2) = NAN;
    EXPECT_TRUE(changed != changed);
    EXPECT_TRUE(DenseMatrix(2, 3, 1.0) != DenseMatrix(3, 2, 1.0));
    EXPECT_TRUE(DenseMatrix(0, 3) == DenseMatrix(0, 3));
    EXPECT_TRUE(DenseMatrix(0, 3) != DenseMatrix(3, 0));
    changed.zero();
    changed(0, 1) = 2.0;
    const kmat::SparseMatrix sparse = changed.toSparse();
    EXPECT_EQ(sparse.getNumberOfElements(), 1);
    EXPECT_EQ(*sparse.begin(), (kmat::SparseEntry{0, 1, 2.0}));
}

TEST(DenseMatrixTest, MovesLeaveAnEmptyMatrixThatIsSafeToUse) {
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
    DenseMatrix null(nullptr);
    for (DenseMatrix* empty : {&x, &z, &null}) {
        EXPECT_EQ(empty->begin(), nullptr);
        empty->fill(1.0);
        empty->zero();
        empty->transpose();
        EXPECT_EQ(Matrix(*empty + *empty * *empty), Matrix(0, 0));
        EXPECT_EQ(empty->length(), 0.0);
    }
}

TEST(DenseMatrixTest, PrintsRowsBetweenBrackets) {
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
