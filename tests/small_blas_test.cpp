#include "small_blas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "support/textbook.h"

namespace {

using smallblas::Kernels;

// Columns of random numbers with a gap after each, in a block that ends with the last number, so
// that the address sanitizer sees a kernel that reads or writes beyond it.
struct Columns {
    int rows;
    int columns;
    int distance;
    std::vector<double> values;

    Columns(int rows, int columns, test::Random& random)
        : rows(rows), columns(columns), distance(rows + 3) {
        values.resize(columns > 0 ? static_cast<std::size_t>(distance) * (columns - 1) + rows : 0);
        for (double& value : values) value = random.number();
    }
    double& operator()(int r, int c) { return values[static_cast<std::size_t>(c) * distance + r]; }
    double operator()(int r, int c) const {
        return values[static_cast<std::size_t>(c) * distance + r];
    }
    double* data() { return values.data(); }

    /// The sum over l < k of (*this)(r, l) * B(c, l).
    double product(int r, const Columns& B, int c, int k) const {
        double sum = 0.0;
        for (int l = 0; l < k; ++l) sum += (*this)(r, l) * B(c, l);
        return sum;
    }
};

class SmallBlasTest : public testing::TestWithParam<const Kernels*> {
protected:
    void SetUp() override {
#ifdef __x86_64__
        if ((&kernels == &smallblas::AVX2 && !__builtin_cpu_supports("avx2")) ||
            (&kernels == &smallblas::AVX512 && !__builtin_cpu_supports("avx512vl"))) {
            GTEST_SKIP() << "not on this processor";
        }
#endif
    }

    // The lower triangle of a factor, with a diagonal that keeps solutions small.
    Columns triangle(int n) {
        Columns L(n, n, random);
        for (int i = 0; i < n; ++i) L(i, i) = n + L(i, i);
        return L;
    }

    const Kernels& kernels = *GetParam();
    test::Random random;
    static constexpr double TOLERANCE = 1e-12;
};

std::string nameOf(const testing::TestParamInfo<const Kernels*>& tested) {
#ifdef __x86_64__
    if (tested.param == &smallblas::AVX2) return "AVX2";
    if (tested.param == &smallblas::AVX512) return "AVX512";
#endif
    return "Portable";
}

#ifdef __x86_64__
INSTANTIATE_TEST_SUITE_P(Processors, SmallBlasTest,
                         testing::Values(&smallblas::PORTABLE, &smallblas::AVX2,
                                         &smallblas::AVX512),
                         nameOf);
#else
INSTANTIATE_TEST_SUITE_P(Processors, SmallBlasTest, testing::Values(&smallblas::PORTABLE), nameOf);
#endif

// All shapes up to two tiles and a half in each direction, and inner dimensions around the limit.
std::vector<int> innerDimensions(const Kernels& kernels) {
    return {0, 1, 2, 7, 8, 9, 17, kernels.limit, kernels.limit + 1};
}

TEST_P(SmallBlasTest, Multiplies) {
    for (const int k : innerDimensions(kernels)) {
        for (int m = 0; m <= (k > 17 ? 26 : 60); ++m) {
            for (int n = 0; n <= 20; n += k > 17 ? 5 : 1) {
                Columns A(m, k, random);
                Columns B(n, k, random);
                Columns C(m, n, random);
                const Columns before = C;
                kernels.multiply(m, n, k, A.data(), A.distance, B.data(), B.distance, C.data(),
                                 C.distance);
                for (int c = 0; c < n; ++c) {
                    for (int r = 0; r < m; ++r) {
                        ASSERT_NEAR(C(r, c), A.product(r, B, c, k), TOLERANCE) << m << n << k;
                    }
                    if (c > 0) {
                        ASSERT_EQ(C(-1, c), before(-1, c)) << "between the columns";
                    }
                }
            }
        }
    }
}

TEST_P(SmallBlasTest, Squares) {
    for (const int k : innerDimensions(kernels)) {
        for (int n = 0; n <= 60; ++n) {
            Columns A(n, k, random);
            Columns C(n, n, random);
            kernels.square(n, k, A.data(), A.distance, C.data(), C.distance);
            for (int c = 0; c < n; ++c) {
                for (int r = c; r < n; ++r) {
                    ASSERT_NEAR(C(r, c), A.product(r, A, c, k), TOLERANCE) << n << k;
                }
            }
        }
    }
}

TEST_P(SmallBlasTest, FactorisesAndLeavesWhatIsAboveTheDiagonal) {
    for (int n = 0; n <= 70; ++n) {
        const Columns A = triangle(n);
        Columns L = A;
        ASSERT_EQ(kernels.factorise(n, L.data(), L.distance), 0);
        for (int c = 0; c < n; ++c) {
            for (int r = 0; r < c; ++r) ASSERT_EQ(L(r, c), A(r, c));
            for (int r = c; r < n; ++r) ASSERT_NEAR(L.product(r, L, c, c + 1), A(r, c), TOLERANCE);
        }
        for (const double bad : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
            L = A;
            if (n > 0) L(n / 2, n / 2) = bad;
            ASSERT_EQ(kernels.factorise(n, L.data(), L.distance), n > 0 ? n / 2 + 1 : 0);
        }
    }
}

TEST_P(SmallBlasTest, SolvesFromTheRight) {
    for (int n = 0; n <= 36; ++n) {
        for (int m = 0; m <= 60; ++m) {
            Columns L = triangle(n);
            const Columns B(m, n, random);
            Columns X = B;
            kernels.solveRight(m, n, L.data(), L.distance, X.data(), X.distance);
            for (int c = 0; c < n; ++c) {
                for (int r = 0; r < m; ++r) {
                    ASSERT_NEAR(X.product(r, L, c, c + 1), B(r, c), TOLERANCE) << m << n;
                }
            }
        }
    }
}

TEST_P(SmallBlasTest, MultipliesAndSolvesVectors) {
    for (int n = 0; n <= 36; ++n) {
        Columns L = triangle(n);
        const Columns b(n, 1, random);
        Columns x = b;
        kernels.solve(n, L.data(), L.distance, x.data());
        Columns y = b;
        kernels.solveTransposed(n, L.data(), L.distance, y.data());
        for (int r = 0; r < n; ++r) {
            double forwards = 0.0;
            double backwards = 0.0;
            for (int c = 0; c <= r; ++c) forwards += L(r, c) * x(c, 0);
            for (int c = r; c < n; ++c) backwards += L(c, r) * y(c, 0);
            ASSERT_NEAR(forwards, b(r, 0), TOLERANCE);
            ASSERT_NEAR(backwards, b(r, 0), TOLERANCE);
        }
        for (int m = 0; m <= 36; ++m) {
            Columns A(m, n, random);
            Columns u(m, 1, random);
            const Columns before = u;
            kernels.subtractProduct(m, n, A.data(), A.distance, x.data(), u.data());
            Columns v = b;
            kernels.subtractTransposedProduct(m, n, A.data(), A.distance, u.data(), v.data());
            for (int r = 0; r < m; ++r) {
                double sum = before(r, 0);
                for (int c = 0; c < n; ++c) sum -= A(r, c) * x(c, 0);
                ASSERT_NEAR(u(r, 0), sum, TOLERANCE);
            }
            for (int c = 0; c < n; ++c) {
                double sum = b(c, 0);
                for (int r = 0; r < m; ++r) sum -= A(r, c) * u(r, 0);
                ASSERT_NEAR(v(c, 0), sum, TOLERANCE);
            }
        }
    }
}

}  // namespace
