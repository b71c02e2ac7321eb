// Sizes whose products leave the range of 32-bit numbers: refused, on every platform and before
// memory is taken for them, rather than computed modulo 2^32.

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "support/answers.h"
#include "support/exports.h"

namespace {

std::string textOfIteration() {
    char text[64];
    _IterateVoxamApp(sizeof text, text, nullptr, nullptr, nullptr, 3);
    return text;
}

// What a host sees after a refusal, and that the next small plate is none the worse for it.
void expectRefusal() {
    EXPECT_EQ(textOfIteration(), test::NO_OPTIMISER);
    _InitVoxamApp(3, 2, 1, 1, 0.5F, 1, 0);
    test::update(test::cantilever(3, 2));
    EXPECT_EQ(textOfIteration(), "");
    _DestroyVoxamApp();
}

struct AppSizes {
    int width;
    int height;
    int subdivision;
    int meshFactor;
    int loadCases;
};

void PrintTo(const AppSizes& s, std::ostream* out) {
    *out << s.width << " x " << s.height << ", subdivision " << s.subdivision << ", meshFactor "
         << s.meshFactor << ", " << s.loadCases << " load cases";
}

class LargeAppTest : public testing::TestWithParam<AppSizes> {};

TEST_P(LargeAppTest, IsRefused) {
    const AppSizes& s = GetParam();
    _InitVoxamApp(s.width, s.height, s.subdivision, s.meshFactor, 0.5F, s.loadCases, 1);
    expectRefusal();
}

INSTANTIATE_TEST_SUITE_P(Sizes, LargeAppTest,
                         testing::Values(AppSizes{INT_MAX, 0, 1, 1, 1},      // nodes
                                         AppSizes{-1, 4, 1, 1, 1},           // as unsigned
                                         AppSizes{65536, 65536, 1, 1, 1},    // elements: 2^32
                                         AppSizes{32768, 32768, 1, 1, 1},    // unknowns
                                         AppSizes{2, 3, 65536, 1, 1},        // cells of the design
                                         AppSizes{2, 3, 1, 65536, 1},        // of the picture
                                         AppSizes{1, 1, 256, 256, 1},        // of both: 2^32
                                         AppSizes{0, 3, 65536, 65536, 1},    // element matrices
                                         AppSizes{40, 30, 1, 1, INT_MAX}));  // load cases

// The sizes of the picture are modest, and so is the weight of each of its cells: it is the number
// of the mesh filter's entries that leaves 32 bits, by one part in four thousand.
INSTANTIATE_TEST_SUITE_P(Filters, LargeAppTest, testing::Values(AppSizes{28, 49, 1, 35, 1}));

TEST(LargeGameTest, IsRefused) {
    const float density = 1;
    for (const auto& [width, height, cases] : {std::tuple{INT_MAX, INT_MAX, 1},
                                               {65536, 65536, 1},
                                               {32768, 32768, 1},
                                               {INT_MAX, 0, 1},
                                               {40, 30, INT_MAX}}) {
        _InitVoxamGame(width, height, 1, 1, 0, nullptr, 0, nullptr, cases);
        float value = 77;
        EXPECT_EQ(_SolveVoxamGame(&density, &value), test::FAILED_SCORE);
        EXPECT_EQ(value, 77) << "no solver, so nothing to write";
    }
}

}  // namespace
