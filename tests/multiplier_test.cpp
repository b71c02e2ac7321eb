#include "Multiplier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();
const double NONE = std::nan("");

struct Known {
    const char* what;
    int iteration;
    double lambda, lambdaPrevious;
    Bracket expected;
};

TEST(InitialBracketTest, NarrowsWithWhatIsKnown) {
    const Known cases[] = {{"nothing is known", 0, 7, 7, {0, 10000, 5000}},
                           {"nothing but a start", 1, 7, 7, {0, 10000, 5000}},
                           {"one multiplier", 2, 16, 7, {0, 32, 16}},
                           {"none that is positive", 2, 0, 7, {0, 10000, 5000}},
                           {"none that is a number", 2, NONE, 7, {0, 10000, 5000}},
                           {"a multiplier that fell", 3, 1000, 1300, {700, 1300, 300}},
                           {"a multiplier that rose", 3, 1000, 700, {700, 1300, 300}},
                           {"one that stays, above 1", 4, 800, 800, {796, 804, 4}},
                           {"one that moves less than that", 9, 800, 799, {796, 804, 4}},
                           {"one that stays at 1", 4, 1, 1, {0.995, 1.005, 0.005}},
                           {"one that stays below 1", 5, 0.25, 0.25, {0.245, 0.255, 0.005}},
                           {"later multipliers of 0", 8, 0, 0, {-0.005, 0.005, 0.005}}};
    for (const Known& t : cases) {
        SCOPED_TRACE(t.what);
        const Bracket bracket = initialBracket(t.iteration, t.lambda, t.lambdaPrevious);
        EXPECT_DOUBLE_EQ(bracket.l1, t.expected.l1);
        EXPECT_DOUBLE_EQ(bracket.l2, t.expected.l2);
        EXPECT_DOUBLE_EQ(bracket.widening, t.expected.widening);
    }
}

// An excess that falls through 0 at `root`, and what it was asked for.
struct Search {
    double root;
    std::vector<double> asked;

    double run(Bracket bracket, double tolerance) {
        asked.clear();
        return findMultiplier(bracket, tolerance, [this](double multiplier) {
            asked.push_back(multiplier);
            return root - multiplier;
        });
    }
};

TEST(FindMultiplierTest, BisectsDownToTheTolerance) {
    Search search{300, {}};
    EXPECT_EQ(search.run({0, 1024, 1}, 0.1), 288);
    EXPECT_EQ(search.asked, (std::vector<double>{512, 256, 384, 320, 288}));
}

TEST(FindMultiplierTest, StopsAtTheToleranceItself) {
    Search search{2.25, {}};
    EXPECT_EQ(search.run({1, 3, 1}, 0.5 / 4.5), 2.5);  // from 2 to 2.5
    EXPECT_EQ(search.asked, (std::vector<double>{2, 2.5}));
}

TEST(FindMultiplierTest, AnExcessOfZeroMovesTheUpperEnd) {
    Search search{2, {}};
    EXPECT_EQ(search.run({1, 3, 1}, 0.3), 1.5);
    EXPECT_EQ(search.asked, (std::vector<double>{2, 1.5}));
}

TEST(FindMultiplierTest, ABracketThatIsNarrowFromTheStartIsWidenedFirst) {
    Search search{5000, {}};
    search.run({1000, 1001, 3000}, 0.6);
    EXPECT_EQ(search.asked.front(), 500.5);  // from 0 to 1001
}

TEST(FindMultiplierTest, WidensTheUpperEndByTwiceTheWideningThenByTwiceThat) {
    Search search{100, {}};
    search.run({1, 3, 4}, 0.25);
    ASSERT_GE(search.asked.size(), 6U);
    search.asked.resize(6);
    // The upper end goes from 3 to 11, 27, 59 and 123.
    EXPECT_EQ(search.asked, (std::vector<double>{2, 6.5, 8.75, 17.875, 38.4375, 80.71875}));
}

// With a constant excess one end never moves, and the other reaches how far the search widened.
TEST(FindMultiplierTest, GivesUpAfterTwentyWidenings) {
    const double widened = 2.0 * ((1 << 20) - 1);
    const auto excess = [](double) { return 1.0; };
    EXPECT_NEAR(findMultiplier({1, 3, 1}, 1e-9, excess), 3 + widened, 1);
    const auto lack = [](double) { return -1.0; };
    EXPECT_NEAR(findMultiplier({1e8, 1e8 + 1, 1}, 1e-9, lack), 1e8 - widened, 1);
}

// The search as it is defined, where every midpoint is asked for.
double bisected(Bracket bracket, double tolerance, const std::function<double(double)>& excess) {
    auto [l1, l2, widening] = bracket;
    double lmid = (l1 + l2) / 2;
    for (bool moved1 = false, moved2 = false; !(moved1 && moved2); widening *= 2) {
        moved1 = moved2 = false;
        while ((l2 - l1) / (l2 + l1) > tolerance) {
            lmid = (l1 + l2) / 2;
            const bool positive = excess(lmid) > 0;
            (positive ? l1 : l2) = lmid;
            (positive ? moved1 : moved2) = true;
        }
        if (!moved1)
            l1 = std::max(0.0, l1 - 2 * widening);
        else if (!moved2)
            l2 += 2 * widening;
    }
    return lmid;
}

TEST(FindMultiplierTest, AsksSeldomAndGivesTheBitsOfTheBisection) {
    const struct {
        const char* what;
        std::size_t mostAsked;
        std::function<double(double)> excess;
    } curves[] = {{"smooth", 12, [](double m) { return 1 / std::sqrt(m) - 1 / std::sqrt(7.3); }},
                  {"steep", 60, [](double m) { return std::exp(-40 * (m - 7.3)) - 1; }},
                  {"a step", 60, [](double m) { return m < 7.3 ? 1.0 : -1e-3; }},
                  {"0 in between", 60, [](double m) { return std::clamp(7.3 - m, 0.0, 0.1); }},
                  {"steps", 60, [](double m) { return std::round(1e3 * (7.3 - m)) - 0.5; }}};
    for (const auto& curve : curves) {
        for (const Bracket& bracket :
             {Bracket{6.9, 7.4, 0.25}, {2, 3, 0.5}, {8, 9, 0.5}, {0, 1e4, 5e3}, {-1, 20, 1}}) {
            SCOPED_TRACE(testing::Message() << curve.what << ", from " << bracket.l1);
            std::vector<double> asked;
            const double result = findMultiplier(bracket, 1e-9, [&](double multiplier) {
                asked.push_back(multiplier);
                return curve.excess(multiplier);
            });
            EXPECT_EQ(result, bisected(bracket, 1e-9, curve.excess));
            EXPECT_EQ(asked.back(), result);
            if (bracket.l1 == 6.9) {
                EXPECT_LE(asked.size(), curve.mostAsked);
            }
        }
    }
}

TEST(FindMultiplierTest, AlwaysEnds) {
    for (const double excess : {1.0, -1.0, 0.0, NONE, INF, -INF}) {
        for (const double l2 : {0.0, 1.0, 1e300, INF, NONE}) {
            for (const double tolerance : {1e-9, 0.0}) {
                int calls = 0;
                findMultiplier({0, l2, l2 / 2}, tolerance, [&](double) {
                    ++calls;
                    return excess;
                });
                EXPECT_LE(calls, 21 * 2200) << excess << " " << l2;
            }
        }
    }
}

TEST(FindMultiplierTest, BothEndsAtZeroAreNotSearched) {
    int calls = 0;
    EXPECT_EQ(findMultiplier({0, 0, 0}, 1e-9, [&calls](double) { return ++calls; }), 0.0);
    EXPECT_EQ(calls, 0);
}

}  // namespace
