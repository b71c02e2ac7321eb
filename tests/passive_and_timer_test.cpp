#include <gtest/gtest.h>

#include <chrono>

#include "PassiveBlock.h"
#include "Timer.h"
#include "test_support.h"

namespace {

using Record = std::vector<short>;

constexpr int WIDTH = 4;
constexpr int HEIGHT = 3;
constexpr int CELLS = WIDTH * HEIGHT;

TEST(PassiveBlockTest, EachUpdateReplacesAllCells) {
    PassiveBlock block(WIDTH, HEIGHT, 1, 1);
    const std::vector<int> none(CELLS, 0);
    EXPECT_TRUE(block.IsEmpty());
    for (const auto& [record, expected] : std::vector<std::pair<Record, std::vector<int>>>{
             {{1, 0, 0, 2, 1}, {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}},
             {{0, 2, 0, 3, 2, 0, 0}, {2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2}},
             {{0, 0, 1, 0, 1}, {0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
             {{}, none},
             {{2, 2, 2, 0, 0, 1, 0, 0, 0, 1, 1, 0, 0, 3, 0}, {7, 0, 0, 1, 2, 0, 0, 0, 0, 4, 0, 0}},
             {{0, 0, 0}, none},
             {{-1, 1, -5, 1, 2}, {0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0}}}) {
        block.update(record.empty() ? nullptr : record.data());
        for (int i = 0; i < CELLS; ++i) EXPECT_EQ(block.getCoarseGridElement(i), expected[i]) << i;
        EXPECT_EQ(block.hasPassiveVoid(), !record.empty() && record[0] > 0);
        EXPECT_EQ(block.IsEmpty(), expected == none);
    }
    block.reset();
    EXPECT_EQ(block.getCoarseGridElement(5), 0);
    EXPECT_TRUE(block.IsEmpty());
}

TEST(PassiveBlockTest, FineCellsFindTheirCoarseCellWhereBothRefinementsAgree) {
    for (short marked = 0; marked < CELLS; ++marked) {
        const Record one = {1, 0, 0, static_cast<short>(marked / HEIGHT),
                            static_cast<short>(marked % HEIGHT)};
        for (const int n : {1, 2, 3}) {
            PassiveBlock block(WIDTH, HEIGHT, n * n, n);
            block.update(one.data());
            for (int i = 0; i < CELLS * n * n; ++i) {
                const int cell = i / (HEIGHT * n) / n * HEIGHT + i % (HEIGHT * n) / n;
                EXPECT_EQ(block.getFineGridElement(i), cell == marked) << n << " " << i;
            }
        }
        // With a smaller mesh refinement the formula leaves the grid: there is no coarse cell.
        for (const auto& [fineScale, subdivision] : {std::pair{3U, 3U}, {0U, 3U}, {0U, 0U}}) {
            PassiveBlock block(WIDTH, HEIGHT, fineScale, subdivision);
            block.update(one.data());
            EXPECT_EQ(block.getFineGridElement(CELLS * 9 - 1), 0);
        }
    }
}

TEST(PassiveBlockDeathTest, CellsOutsideTheGridStopTheProcess) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const std::string place = ": SparseMatrixLib/PassiveBlock[^:]*:[0-9]+: update: Assertion `";
    for (const size_t list : {0, 1, 2}) {
        for (const auto& [x, y, condition] : {std::tuple{WIDTH, 0, "x < width"},
                                              {-1, HEIGHT, "x < width"},  // before y
                                              {0, HEIGHT, "y < height"},
                                              {0, -1, "y < height"}}) {
            Record record = {0, 0, 0, 1, 1, static_cast<short>(x), static_cast<short>(y)};
            record[list] = 2;
            PassiveBlock block(WIDTH, HEIGHT, 1, 1);
            EXPECT_DEATH(block.update(record.data()), place + condition + "' failed");
        }
    }
}

TEST(TimerTest, MeasuresWallTimeBetweenStartAndStop) {
    using std::chrono::system_clock;
    const auto microseconds = [](system_clock::duration d) {
        return std::chrono::duration<double, std::micro>(d).count();
    };
    Timer timer;  // not started: counts from the epoch
    const double epoch = microseconds(system_clock::now().time_since_epoch());
    EXPECT_NEAR(timer.getElapsedTimeInMicroSec(), epoch, 1e7);
    for (int round = 0; round < 2; ++round) {  // a start discards what was measured before
        const auto beforeStart = system_clock::now();
        timer.start();
        const auto afterStart = system_clock::now();
        while (timer.getElapsedTimeInMicroSec() < 500.0) continue;  // keeps running
        const auto beforeStop = system_clock::now();
        timer.stop();
        const auto afterStop = system_clock::now();
        const double elapsed = timer.getElapsedTimeInMicroSec();
        EXPECT_GE(elapsed, microseconds(beforeStop - afterStart) - 1.0);  // whole microseconds
        EXPECT_LE(elapsed, microseconds(afterStop - beforeStart) + 1.0);
        while (system_clock::now() < afterStop + std::chrono::microseconds(50)) continue;
        EXPECT_EQ(timer.getElapsedTimeInMicroSec(), elapsed);
        EXPECT_DOUBLE_EQ(timer.getElapsedTimeInMilliSec(), elapsed / 1e3);
        EXPECT_DOUBLE_EQ(timer.getElapsedTimeInSec(), elapsed / 1e6);
        EXPECT_DOUBLE_EQ(timer.getElapsedTime(), elapsed / 1e6);
    }
}

}  // namespace
