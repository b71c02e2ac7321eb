#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <memory>
#include <vector>

#include "TopologyOptimizationComponentData.h"

namespace {

using Record = TopologyOptimizationComponentData;

Record recordOf(float x, float y, float fx, float fy, float loadCase) {
    const float data[] = {x, y, fx, fy, loadCase};
    return Record(data);
}

TEST(ComponentDataTest, IndicesAreRoundedHalvesAwayFromZeroAndForcesKept) {
    const Record up = recordOf(0.5F, 1.5F, 0.1F, -0.0F, -0.5F);
    const Record down = recordOf(2.4F, -2.5F, 0, 0, 2.49F);
    EXPECT_EQ((std::vector{up.x, up.y, up.loadCase}), (std::vector{1, 2, -1}));
    EXPECT_EQ((std::vector{down.x, down.y, down.loadCase}), (std::vector{2, -3, 2}));
    EXPECT_EQ(up.fx, 0.1F);
    EXPECT_TRUE(up.fy == 0.0F && std::signbit(up.fy));
}

TEST(ComponentDataTest, IndicesBeyondAnyGridBecomeTheLowestInteger) {
    for (const float outside : {NAN, INFINITY, -INFINITY, 3e9F, -3e9F, 2147483648.0F}) {
        EXPECT_EQ(recordOf(outside, 0, 0, 0, 0).x, INT_MIN) << outside;
        EXPECT_EQ(recordOf(0, outside, 0, 0, 0).y, INT_MIN) << outside;
        EXPECT_EQ(recordOf(0, 0, 0, 0, outside).loadCase, INT_MIN) << outside;
    }
    EXPECT_EQ(recordOf(2147483520.0F, 0, 0, 0, 0).x, 2147483520);
    EXPECT_EQ(recordOf(-2147483520.0F, 0, 0, 0, 0).x, -2147483520);
}

TEST(ComponentDataTest, ListsAreReadInOrderAndNothingOfNoneAtAll) {
    const float data[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    const auto records = Record::load(data, 2);
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].loadCase, 5);
    EXPECT_EQ(records[1].x, 6);
    EXPECT_TRUE(Record::load(data, 0).empty());
    EXPECT_TRUE(Record::load(data, -3).empty());
    EXPECT_TRUE(Record::load(nullptr, 3).empty());
}

TEST(ComponentDataTest, WritesItsFloatsBack) {
    const Record record = recordOf(2.4F, -2.5F, 0.25F, -1, 2.5F);
    const std::vector<float> expected = {2, -3, 0.25F, -1, 3};
    std::vector<float> out(5);
    EXPECT_EQ(record.toFloatArray(out.data()), out.data());
    EXPECT_EQ(out, expected);
    const std::unique_ptr<float[]> fresh(record.toFloatArray(nullptr));
    EXPECT_EQ(std::vector<float>(fresh.get(), fresh.get() + 5), expected);
}

}  // namespace
