#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "ParallelFor.h"

namespace {

TEST(ParallelForTest, RunsEveryTaskOnceBeforeItReturns) {
    for (const std::size_t count : {0U, 1U, 2U, 3U, 1000U}) {
        std::vector<std::atomic<int>> runs(count);
        parallelFor(count, [&runs](std::size_t i) { ++runs[i]; });
        for (const auto& run : runs) EXPECT_EQ(run, 1) << count;
    }
}

TEST(ParallelForTest, RunsWithinATaskOfItsOwn) {
    std::atomic<int> runs = 0;
    parallelFor(4, [&runs](std::size_t) { parallelFor(5, [&runs](std::size_t) { ++runs; }); });
    EXPECT_EQ(runs, 20);
}

}  // namespace
