// Dense factorisations, and the performance test's tables.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "PerformanceTest.h"
#include "dense_matrix.h"
#include "kmat_exception.h"
#include "voxam.h"

using kmat::DenseMatrix;
using kmat::KmatException;

namespace {

DenseMatrix matrix(unsigned rows, unsigned columns, const std::vector<double>& byColumns) {
    DenseMatrix m(rows, columns);
    m.set(byColumns.data());
    return m;
}

DenseMatrix randomMatrix(unsigned rows, unsigned columns, unsigned seed) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    DenseMatrix m(rows, columns);
    for (double& v : m) v = value(generator);
    return m;
}

std::string takeFailure() {
    const KmatException* failure = KmatException::getLastException();
    const std::string text = failure ? failure->what() : "";
    KmatException::clearLastException();
    return text;
}

double largestDifference(const DenseMatrix& a, const DenseMatrix& b) {
    double largest = 0.0;
    for (unsigned c = 0; c < a.getColumns(); ++c) {
        for (unsigned r = 0; r < a.getRows(); ++r) {
            largest = std::max(largest, std::fabs(a(r, c) - b(r, c)));
        }
    }
    return largest;
}

}  // namespace

TEST(DenseFactorisation, InverseTimesMatrixIsIdentity) {
    for (unsigned n : {1U, 2U, 5U, 20U}) {
        DenseMatrix identity(n, n, 0.0);
        for (unsigned i = 0; i < n; ++i) identity(i, i) = 1.0;
        const DenseMatrix A = randomMatrix(n, n, n);
        EXPECT_LT(largestDifference(inversed(A) * A, identity), 1e-10);
        EXPECT_LT(largestDifference(A * inversed(A.copy()), identity), 1e-10);
    }
    const DenseMatrix byHand = inversed(matrix(2, 2, {4, 2, 7, 6}));
    EXPECT_LT(largestDifference(byHand, matrix(2, 2, {0.6, -0.2, -0.7, 0.4})), 1e-15);
    EXPECT_EQ(takeFailure(), "");
}

TEST(DenseFactorisation, SolvesInEveryValueCategory) {
    const DenseMatrix A = randomMatrix(6, 6, 1);
    const DenseMatrix X = randomMatrix(6, 3, 2);
    const DenseMatrix B = A * X;
    EXPECT_LT(largestDifference(solve(A, B), X), 1e-12);
    EXPECT_LT(largestDifference(solve(A.copy(), B), X), 1e-12);
    DenseMatrix temporary = B.copy();
    const double* storage = temporary.begin();
    const DenseMatrix inPlace = solve(A, std::move(temporary));
    EXPECT_EQ(inPlace.begin(), storage);
    EXPECT_LT(largestDifference(inPlace, X), 1e-12);
    EXPECT_LT(largestDifference(solve(A.copy(), B.copy()), X), 1e-12);
    EXPECT_EQ(A, randomMatrix(6, 6, 1)) << "operands that are no temporaries must stay";
    EXPECT_EQ(takeFailure(), "");
}

TEST(DenseFactorisation, RecordsFailuresWithTheirSigns) {
    DenseMatrix zero(2, 2, 0.0);
    zero.inverse();
    EXPECT_EQ(takeFailure(), "U(-1,-1) is exactly zero. The factor U is exactly singular.");
    solve(matrix(3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 0}), DenseMatrix(3, 1, 1.0));
    EXPECT_EQ(takeFailure(), "U(-3,-3) is exactly zero. The factor U is exactly singular.");

    DenseMatrix tall(3, 2, 1.0);
    tall.inverse();
    EXPECT_EQ(takeFailure(), "The 3 -th argument had an illegal value");
    EXPECT_EQ(tall, DenseMatrix(3, 2, 1.0));
    solve(DenseMatrix(3, 2, 1.0), DenseMatrix(3, 1, 1.0));
    EXPECT_EQ(takeFailure(), "The 3 -th argument had an illegal value");
    solve(DenseMatrix(2, 3, 1.0), DenseMatrix(3, 1, 1.0));
    EXPECT_EQ(takeFailure(), "The 4 -th argument had an illegal value");
}

TEST(DenseFactorisation, DeterminantFollowsTheDiagonals) {
    EXPECT_EQ(DenseMatrix(0, 0).determinant(), 0.0);
    EXPECT_EQ(DenseMatrix(1, 1, -3.0).determinant(), -3.0);
    EXPECT_EQ(matrix(2, 2, {1, 2, 3, 4}).determinant(), -2.0);
    EXPECT_EQ(matrix(3, 3, {2, 0, 1, -1, 3, 4, 5, 2, -2}).determinant(), -45.0);
    EXPECT_TRUE(std::isnan(DenseMatrix(2, 3, 1.0).determinant()));
    DenseMatrix identity(4, 4, 0.0);
    for (unsigned i = 0; i < 4; ++i) identity(i, i) = 1.0;
    EXPECT_EQ(identity.determinant(), 1.0);
    // The true determinant of this permutation is 1.
    EXPECT_EQ(matrix(4, 4, {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0}).determinant(), -1.0);
}

TEST(PerformanceTest, PrintsOneTablePerPlate) {
    testing::internal::CaptureStdout();
    profileNumberOfIterations(6, 4, {1, 3});
    std::istringstream printed(testing::internal::GetCapturedStdout());
    const std::string cells = "(\t[0-9.e+-]+ \\([0-9.e+-]+\\)){2}";
    const std::vector<std::string> expected = {
        "Profile number of iterations 6x4",     "Iterations:\t1\t3",
        "Allways create triplet " + cells,      "Reuse sparse \\(sequential\\)" + cells,
        "Reuse sparse \\(parallel\\) " + cells, "Reuse sparse \\(parallel build\\) " + cells};
    std::string line;
    for (const std::string& pattern : expected) {
        ASSERT_TRUE(std::getline(printed, line));
        EXPECT_THAT(line, testing::MatchesRegex(pattern));
    }
    EXPECT_FALSE(std::getline(printed, line));

    testing::internal::CaptureStdout();
    _VoxamPerformanceTest();
    const std::string all = testing::internal::GetCapturedStdout();
    for (const char* plate : {" 8x12\n", " 12x18\n", " 16x24\n", " 20x30\n", " 30x45\n"}) {
        EXPECT_THAT(all, testing::HasSubstr(plate));
    }
}
