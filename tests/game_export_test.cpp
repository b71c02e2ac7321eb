#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

#include "TopologyOptimizationComponentData.h"
#include "support/answers.h"
#include "support/guarded.h"
#include "support/plates.h"
#include "voxam.h"

namespace {

using test::Records;

constexpr double FAILED = test::FAILED_SCORE;
constexpr int NELX = 4;
constexpr int NELY = 3;
constexpr std::size_t ELEMENTS = 12;

void init(const Records& loads, const Records& supports, int loadCases = 1) {
    _InitVoxamGame(NELX, NELY, 1, 1, loads.count(), loads.data(), supports.count(), supports.data(),
                   loadCases);
}

// The banner comes once in a process, so it is caught before any test runs.
class FirstCalls : public testing::Environment {
public:
    inline static std::string output;

    void SetUp() override {
        testing::internal::CaptureStdout();
        for (int i = 0; i < 2; ++i) init({}, {});
        output = testing::internal::GetCapturedStdout();
        _DestroyVoxamGame();
    }
};
const auto* const FIRST_CALLS = testing::AddGlobalTestEnvironment(new FirstCalls);

constexpr float UNTOUCHED = test::Guarded<float>::UNTOUCHED;

// All element values must come back as `value`.
double solve(float value) {
    const std::vector<float> densities(ELEMENTS, 1.0F);
    test::Guarded<float> values(ELEMENTS);
    const double result = _SolveVoxamGame(densities.data(), values.data());
    EXPECT_TRUE(values.isIntact());
    for (const float v : values) EXPECT_NEAR(v, value, 1e-5 * value);
    return result;
}

TEST(GameExportTest, PrintsTheBannerOnce) {
    EXPECT_EQ(FirstCalls::output, "VoxamApp386Game lib version " VOXAM_BANNER_VERSION "\n");
}

TEST(GameExportTest, PrintsOfRecordsTheTitleAloneAlsoWithoutASolver) {
    _DestroyVoxamGame();
    const float record[] = {1, 2, 3, 4, 5};
    for (const int count : {0, 1}) {
        testing::internal::CaptureStdout();
        printVoxamData(TopologyOptimizationComponentData::load(record, count), "A title");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "A title\n");
    }
}

TEST(GameExportTest, ScoresReplacesAndDestroys) {
    const Records supports = test::slidingLeftEdge(NELY);
    init(test::tension(NELX, NELY, 1), supports);
    EXPECT_NEAR(solve(1.0F), 12.0, 1e-4);  // unit stress, unit modulus: the area
    EXPECT_NEAR(solve(1.0F), 12.0, 1e-4);
    init(test::tension(NELX, NELY, 2), supports);
    EXPECT_NEAR(solve(4.0F), 48.0, 4e-4);
    for (int i = 0; i < 2; ++i) {
        _DestroyVoxamGame();
        EXPECT_EQ(solve(UNTOUCHED), FAILED);
    }
}

TEST(GameExportTest, FailuresGiveTheLargestFloatAndZeroes) {
    const Records loads = test::tension(NELX, NELY, 1);
    init(loads, {});
    EXPECT_EQ(solve(0.0F), FAILED);
    init(loads, test::slidingLeftEdge(NELY), 0);  // no such load case
    EXPECT_EQ(solve(0.0F), FAILED);
    EXPECT_EQ(_SolveVoxamGame(nullptr, nullptr), FAILED);
    init(test::Records(loads).add(1, 1, 1, NAN), test::slidingLeftEdge(NELY));
    EXPECT_EQ(solve(0.0F), FAILED);
    _InitVoxamGame(INT_MAX, INT_MAX, 1, 1, 0, nullptr, 0, nullptr, 1);  // cannot be built
    EXPECT_EQ(solve(UNTOUCHED), FAILED);
    _DestroyVoxamGame();
}

TEST(GameExportTest, NoRecordsMeansNoLoadsOrNoSupports) {
    const Records supports = test::slidingLeftEdge(NELY);
    for (const int count : {0, -1, 5}) {  // with a null array the count does not matter
        _InitVoxamGame(NELX, NELY, 1, 1, count, nullptr, supports.count(), supports.data(), 1);
        EXPECT_EQ(solve(0.0F), 0.0);
        _InitVoxamGame(NELX, NELY, 1, 1, 0, nullptr, count, nullptr, 1);
        EXPECT_EQ(solve(0.0F), FAILED);
    }
    _DestroyVoxamGame();
}

}  // namespace
