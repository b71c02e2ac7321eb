#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "PassiveBlock.h"

namespace {

using Record = std::vector<short>;

constexpr int WIDTH = 4;
constexpr int HEIGHT = 3;
constexpr int CELLS = WIDTH * HEIGHT;

std::vector<int> kindsOf(const PassiveBlock& block) {
    std::vector<int> kinds;
    for (int i = 0; i < CELLS; ++i) kinds.push_back(block.getCoarseGridElement(i));
    return kinds;
}

PassiveBlock blockOf(const Record& record) {
    PassiveBlock block(WIDTH, HEIGHT, 1, 1);
    block.update(record.data());
    return block;
}

const std::vector<int> NONE(CELLS, 0);

TEST(PassiveBlockTest, ListsMarkTheKindsOfTheirCells) {
    const struct {
        const char* what;
        Record record;
        std::vector<int> kinds;
        bool empty, hasVoid;
    } cases[] = {
        {"nothing", {0, 0, 0}, NONE, true, false},
        {"void", {1, 0, 0, 2, 1}, {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}, false, true},
        {"solid", {0, 2, 0, 3, 2, 0, 0}, {2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2}, false, false},
        {"second solid", {0, 0, 1, 0, 1}, {0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, false, false},
        {"several kinds",
         {2, 2, 2, 0, 0, 1, 0, 0, 0, 1, 1, 0, 0, 3, 0},
         {7, 0, 0, 1, 2, 0, 0, 0, 0, 4, 0, 0},
         false,
         true},
        {"some less than none",
         {-1, 1, -5, 1, 2},
         {0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0},
         false,
         false},
        {"less than none", {-1, 0, -1}, NONE, true, false}};
    for (const auto& t : cases) {
        SCOPED_TRACE(t.what);
        const PassiveBlock block = blockOf(t.record);
        EXPECT_EQ(kindsOf(block), t.kinds);
        EXPECT_EQ(block.IsEmpty(), t.empty);
        EXPECT_EQ(block.hasPassiveVoid(), t.hasVoid);
        for (int i = 0; i < CELLS; ++i) EXPECT_EQ(block.isVoid(i), t.kinds[i] % 2 == 1) << i;
    }
    EXPECT_TRUE(PassiveBlock(WIDTH, HEIGHT, 1, 1).IsEmpty());
    EXPECT_FALSE(PassiveBlock(WIDTH, HEIGHT, 1, 1).hasPassiveVoid());
}

TEST(PassiveBlockTest, EachUpdateReplacesAllCellsAndResetFreesThem) {
    const Record next = {0, 1, 0, 1, 1};
    PassiveBlock block = blockOf({1, 0, 0, 2, 1});
    block.update(next.data());
    EXPECT_EQ(kindsOf(block), (std::vector<int>{0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(block.hasPassiveVoid());
    PassiveBlock withVoid = blockOf({1, 0, 0, 2, 1});
    block.update(nullptr);
    withVoid.reset();
    for (const PassiveBlock* freed : {&block, &withVoid}) {
        EXPECT_EQ(kindsOf(*freed), NONE);
        EXPECT_TRUE(freed->IsEmpty());
        EXPECT_FALSE(freed->hasPassiveVoid());
    }
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
    for (const std::size_t list : {0, 1, 2}) {
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

}  // namespace
