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

TEST(PassiveBlockTest, ListsMarkVoidSolidAndSecondSolidCells) {
    EXPECT_EQ(kindsOf(blockOf({1, 0, 0, 2, 1})),
              (std::vector<int>{0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}));
    EXPECT_EQ(kindsOf(blockOf({0, 2, 0, 3, 2, 0, 0})),
              (std::vector<int>{2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2}));
    EXPECT_EQ(kindsOf(blockOf({0, 0, 1, 0, 1})),
              (std::vector<int>{0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(kindsOf(blockOf({0, 0, 0})), NONE);
}

TEST(PassiveBlockTest, ACellInSeveralListsIsOfSeveralKinds) {
    EXPECT_EQ(kindsOf(blockOf({2, 2, 2, 0, 0, 1, 0, 0, 0, 1, 1, 0, 0, 3, 0})),
              (std::vector<int>{7, 0, 0, 1, 2, 0, 0, 0, 0, 4, 0, 0}));
}

TEST(PassiveBlockTest, NegativeCountsAreZero) {
    EXPECT_EQ(kindsOf(blockOf({-1, 1, -5, 1, 2})),
              (std::vector<int>{0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0}));
}

TEST(PassiveBlockTest, TellsWhetherAnyCellIsPassiveOrVoid) {
    const std::tuple<Record, bool, bool> cases[] = {{{0, 0, 0}, true, false},
                                                    {{1, 0, 0, 2, 1}, false, true},
                                                    {{0, 1, 0, 2, 1}, false, false},
                                                    {{0, 0, 1, 2, 1}, false, false},
                                                    {{-1, 0, -1}, true, false}};
    for (const auto& [record, empty, hasVoid] : cases) {
        EXPECT_EQ(blockOf(record).IsEmpty(), empty);
        EXPECT_EQ(blockOf(record).hasPassiveVoid(), hasVoid);
    }
    EXPECT_TRUE(PassiveBlock(WIDTH, HEIGHT, 1, 1).IsEmpty());
    EXPECT_FALSE(PassiveBlock(WIDTH, HEIGHT, 1, 1).hasPassiveVoid());
}

TEST(PassiveBlockTest, EachUpdateReplacesAllCells) {
    const Record next = {0, 1, 0, 1, 1};
    PassiveBlock block = blockOf({1, 0, 0, 2, 1});
    block.update(next.data());
    EXPECT_EQ(kindsOf(block), (std::vector<int>{0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(block.hasPassiveVoid());
    block.update(nullptr);
    EXPECT_EQ(kindsOf(block), NONE);
    EXPECT_TRUE(block.IsEmpty());
}

TEST(PassiveBlockTest, ResetFreesAllCells) {
    PassiveBlock block = blockOf({1, 0, 0, 2, 1});
    block.reset();
    EXPECT_EQ(kindsOf(block), NONE);
    EXPECT_TRUE(block.IsEmpty());
    EXPECT_FALSE(block.hasPassiveVoid());
}

TEST(PassiveBlockTest, AVoidCellIsVoidWhateverElseItIs) {
    const PassiveBlock block = blockOf({2, 2, 0, 0, 0, 0, 1, 0, 1, 0, 2});
    EXPECT_TRUE(block.isVoid(0));
    EXPECT_TRUE(block.isVoid(1));   // also solid
    EXPECT_FALSE(block.isVoid(2));  // solid alone
    EXPECT_FALSE(block.isVoid(3));
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

}  // namespace
