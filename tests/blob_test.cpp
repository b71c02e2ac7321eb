// The blob by itself: its interface, its move limit and its redistribution.
#include "Blob.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "support/matrices.h"

namespace {

using kmat::DenseMatrix;
using test::column;
using test::distance;
using test::listOf;
using test::Matrix;
using Cells = std::vector<unsigned>;

PassiveBlock noPassiveCells(unsigned nelx, unsigned nely) { return {nelx, nely, 1, 1}; }

double sum(const std::vector<double>& values) {
    double result = 0.0;
    for (const double v : values) result += v;
    return result;
}

struct Restart {
    short cells;
    double interface;  ///< of the disc of that area
    double limit;      ///< a tenth of it, as an even number
};

// On an odd grid the disc has a cell in the middle: itself and 4 neighbours, or a square of 9.
TEST(BlobRestartTest, MeasuresTheDiscOfTheBlobsArea) {
    Blob blob(11, 11, 3.0);
    for (const Restart& t : {Restart{0, 0, 0}, {2, 5, 2}, {4, 12, 2}, {9, 20, 4}}) {
        std::vector<short> data(19);  // its first element, time and again
        data[0] = t.cells;
        blob.restart(data.data(), noPassiveCells(11, 11));
        EXPECT_EQ(blob.hasBlob, t.cells > 0);
        EXPECT_NEAR(blob.circleMoI, t.cells * t.cells / (2 * std::numbers::pi), 1e-14);
        EXPECT_EQ(blob.circleInterfaceSize, t.interface) << t.cells;
        EXPECT_EQ(blob.blobMoveLimit, t.limit) << t.cells;
        EXPECT_EQ(blob.blobMoveLimitMax, t.limit);
        EXPECT_EQ(blob.blobMoveLimitFraction, t.limit);
    }
}

TEST(BlobRestartTest, CentresTheDiscOnTheGrid) {
    Blob blob(4, 3, 3.0);
    // Centres of cells lie at -1.5 .. 1.5 and -1 .. 1; the squared radius is 4 / pi.
    const short four[] = {4, 0, 0, 0, 1, 1, 0, 1, 1};
    blob.restart(four, noPassiveCells(4, 3));
    EXPECT_EQ(listOf(blob.circleMask), (std::vector<double>{0, 0, 0, 1, 1, 1, 1, 1, 1, 0, 0, 0}));
    blob.circleRadiusSquared = 1.25;  // on the circle is not inside
    blob.interfaceSizeOfEquivalentCircle(noPassiveCells(4, 3));
    EXPECT_EQ(listOf(blob.circleMask), (std::vector<double>{0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0}));
}

TEST(BlobRestartTest, ForgetsTheStepsSoFar) {
    Blob blob(5, 4, 3.0);
    blob.blobStage = 5;
    blob.blobMoveCount = 5.0;
    const short one[] = {1, 1, 2};
    blob.restart(one, noPassiveCells(5, 4));
    EXPECT_EQ(blob.blobStage, 0);
    EXPECT_EQ(blob.blobMoveCount, 0.0);
    EXPECT_EQ(blob.objectivePrevious, 1e10);
    EXPECT_EQ(blob.objectivePrevious2, 1e10);
    EXPECT_EQ(sum(test::listOf(blob.blobInterface)), 5.0);  // the cell and its neighbours
}

// 1 where the mask, smoothed by the textbook, is neither that of the inside nor of the outside.
std::vector<double> interfaceOf(Matrix mask) {
    const Matrix weights = test::coneWeights(7, 6, 1.2F);
    const Matrix sums = test::rowSums(weights);
    for (unsigned i = 0; i < 42; ++i) mask(i, 0) /= sums(i, 0);
    std::vector<double> marks;
    for (const double v : product(weights, mask).values) {
        marks.push_back(v >= 0.0001 && v <= 0.9999);
    }
    return marks;
}

// Random masks, first as the circle's, which knows no passive cells, and then as the blob's.
TEST(BlobInterfaceTest, IsWhereTheSmoothedMaskIsNeitherZeroNorOneAndNothingIsPassive) {
    test::Random random;
    const short record[] = {2, 1, 2, 2, 1, 1, 1, 3, 3, 2, 1, 5, 2};  // (2, 1) is void and solid
    PassiveBlock passive = noPassiveCells(7, 6);
    passive.update(record);
    for (int round = 0; round < 15; ++round) {
        Matrix mask(42, 1);
        for (double& v : mask.values) v = random.below(4) > 0;
        std::vector<double> marks = interfaceOf(mask);
        Blob blob(7, 6, 3.0);
        blob.circleMask.set(mask.values.data());
        blob.findBlobInterface(Blob::Shape::CIRCLE, passive);
        EXPECT_EQ(listOf(blob.circleInterface), marks);
        EXPECT_TRUE(test::isUnset(blob.blobInterface));
        for (const unsigned cell : {7, 21, 32}) marks[cell] = 0.0;
        blob.blobMask.set(mask.values.data());
        blob.findBlobInterface(Blob::Shape::BLOB, passive);
        EXPECT_EQ(listOf(blob.blobInterface), marks);
    }
}

// The filter of the coarse grid with the blob's complement for a density, which is never 0, and one
// normaliser for all.
TEST(BlobSensitivityTest, IsFilteredByTheComplementOfTheMask) {
    test::Random random;
    Blob blob(5, 4, 1.5);
    for (const unsigned cell : {7U, 8U, 11U}) blob.blobMask(cell, 0) = 1.0;
    blob.blobMask(12, 0) = 0.25;
    const Matrix given(20, 1, random);
    const Matrix weights = test::coneWeights(5, 4, 1.5);
    const Matrix sums = test::rowSums(weights);
    const double largest = *std::max_element(sums.values.begin(), sums.values.end());
    const auto share = [&](unsigned i) { return std::max(0.001, 1.0 - blob.blobMask(i, 0)); };
    Matrix weighted = given;
    for (unsigned i = 0; i < 20; ++i) weighted(i, 0) *= share(i);
    Matrix expected = product(weights, weighted);
    for (unsigned i = 0; i < 20; ++i) expected(i, 0) /= largest * share(i);

    blob.blobSensitivity.set(given.values.data());
    blob.filterBlobSensitivities();
    EXPECT_LT(distance(Matrix(blob.blobSensitivity), expected), 1e-11);
}

/// Where the compliance has gone, up to the present.
struct Compliance {
    double previous2, previous, now;
};

constexpr Compliance FALLING = {3, 2, 1};
constexpr Compliance RISING = {1, 2, 3};
constexpr Compliance TURNING = {3, 1, 2};
constexpr Compliance TURNING_DOWN = {1, 3, 2};
constexpr Compliance STANDING = {2, 2, 1};

struct Limits {
    double limit, fraction;
};

struct Step {
    const char* what;
    Limits before;
    double max;
    double moved;  ///< elements on each side by the last redistribution
    Compliance compliance;
    Limits after;
};

TEST(BlobMoveLimitTest, FollowsTheCompliance) {
    const Step steps[] = {{"a small one grows unseen", {8, 8}, 20, 10, FALLING, {8, 8.24}},
                          {"and at last shows", {8, 8.8}, 20, 10, RISING, {10, 9.064}},
                          {"shrinks when it turns", {8, 7}, 20, 10, TURNING, {6, 6.65}},
                          {"either way", {8, 7}, 20, 10, TURNING_DOWN, {6, 6.65}},
                          {"standing is no turn", {8, 8}, 20, 10, STANDING, {8, 8.24}},
                          {"up to the maximum", {8, 9.9}, 10, 10, FALLING, {10, 10}},
                          {"twice what moved", {8, 8}, 20, 1, FALLING, {2, 2.06}},
                          {"nothing moved", {8, 8}, 20, 0, FALLING, {0, 0}},
                          {"10 is large, and does not stay", {10, 5}, 20, 10, FALLING, {12, 5}},
                          {"a large one grows by two", {12, 5}, 20, 10, FALLING, {14, 5}},
                          {"up to an odd maximum", {12, 5}, 13, 10, FALLING, {13, 5}},
                          {"or stays there", {12, 5}, 12, 10, FALLING, {12, 5}},
                          {"a large one, twice what moved", {12, 5}, 20, 3, FALLING, {8, 5}},
                          {"a large one, nothing moved", {12, 5}, 20, 0, FALLING, {0, 5}},
                          {"3 %, an even number of them", {100, 5}, 200, 99, FALLING, {102, 5}},
                          {"3 % in single precision", {200, 5}, 900, 150, FALLING, {206, 5}},
                          {"below a broken maximum", {100, 5}, 102.5, 99, FALLING, {102, 5}},
                          {"a large one shrinks by 5 %", {50, 5}, 200, 99, TURNING, {46, 5}},
                          {"below 10 from then on", {10, 5}, 200, 99, TURNING, {8, 5}}};
    for (const Step& t : steps) {
        SCOPED_TRACE(t.what);
        Blob blob(2, 2, 3.0);
        blob.blobMoveLimit = t.before.limit;
        blob.blobMoveLimitFraction = t.before.fraction;
        blob.blobMoveLimitMax = t.max;
        blob.blobMoveCount = t.moved;
        blob.objectivePrevious2 = t.compliance.previous2;
        blob.objectivePrevious = t.compliance.previous;
        blob.updateBlobMoveLimit(t.compliance.now);
        EXPECT_EQ(blob.blobMoveLimit, t.after.limit);
        EXPECT_DOUBLE_EQ(blob.blobMoveLimitFraction, t.after.fraction);
        EXPECT_EQ(blob.objectivePrevious2, t.compliance.previous);
        EXPECT_EQ(blob.objectivePrevious, t.compliance.now);
    }
}

// A row of 12 elements. 0 to 4 lie inside, 5 to 8 outside; the others are no candidates.
class BlobRedistributionTest : public testing::Test {
protected:
    Blob blob{12, 1, 3.0};
    DenseMatrix& mask = blob.blobMask;

    BlobRedistributionTest() {
        mask = column({1, 1, 1, 1, 1, 0, 0, 0, 0, 1, 0, 0.5});
        blob.blobSensitivity = column({NAN, 3, -1, 9, 2, 6, NAN, -7, 1, 99, -99, 0});
        blob.blobInterface = column({1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 1});
    }

    void redistribute(double limit) {
        blob.blobMoveLimit = limit;
        blob.redistributeBlob();
    }
};

TEST_F(BlobRedistributionTest, ExchangesTheLeastUsefulUpToHalfOfTheInside) {
    const Matrix start(mask);
    for (const double limit : {4.0, 100.0}) {
        mask = test::dense(start);
        redistribute(limit);
        EXPECT_EQ(blob.blobLeaving, (Cells{3, 1}));
        EXPECT_EQ(blob.blobJoining, (Cells{7, 8}));
        EXPECT_EQ(blob.blobMoveCount, 2.0);
        EXPECT_EQ(blob.blobConverged, 0);
        EXPECT_EQ(listOf(mask), (std::vector<double>{1, 0, 1, 0, 1, 0, 0, 1, 1, 1, 0, 0.5}));
    }
}

TEST_F(BlobRedistributionTest, ChoosesOneOfEachSideButMovesNoneWithoutALimit) {
    for (const double limit : {0.0, 1.0}) {
        redistribute(limit);
        EXPECT_EQ(blob.blobLeaving, (Cells{3}));
        EXPECT_EQ(blob.blobJoining, (Cells{7}));
        EXPECT_EQ(blob.blobConverged, 1);
        EXPECT_EQ(listOf(mask), (std::vector<double>{1, 1, 1, 1, 1, 0, 0, 0, 0, 1, 0, 0.5}));
    }
}

TEST_F(BlobRedistributionTest, TakesWhatIsNotANumberLast) {
    blob.blobSensitivity = column({NAN, 3, NAN, 9, 2, NAN, NAN, NAN, 1, 99, -99, 0});
    blob.blobInterface.fill(1.0);
    mask = column({1, 1, 1, 1, 1, 0, 0, 0, 0, 1, 1, 1});
    redistribute(8);
    EXPECT_EQ(blob.blobLeaving, (Cells{9, 3, 1, 4}));
    ASSERT_EQ(blob.blobJoining.size(), 4U);
    EXPECT_EQ(blob.blobJoining.front(), 8U);
}

TEST_F(BlobRedistributionTest, ShrinksWhenTooFewAreOutside) {
    mask.fill(1.0);
    mask(6, 0) = 0.0;
    blob.blobInterface.fill(1.0);
    redistribute(100);
    EXPECT_EQ(blob.blobLeaving, (Cells{9, 3, 5, 1, 4}));
    EXPECT_EQ(blob.blobJoining, (Cells{6}));
    EXPECT_EQ(sum(listOf(mask)), 7.0);
}

TEST_F(BlobRedistributionTest, WithoutAnInsideChoosesOneAndMovesNone) {
    mask.fill(0.0);
    blob.blobInterface.fill(1.0);
    redistribute(100);
    EXPECT_EQ(blob.blobLeaving, Cells());
    EXPECT_EQ(blob.blobJoining, (Cells{10}));
    EXPECT_EQ(blob.blobConverged, 1);
    EXPECT_EQ(sum(listOf(mask)), 0.0);
}

}  // namespace
