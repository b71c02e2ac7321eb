// Sizes whose products leave the range of 32-bit numbers: refused, on every platform and before
// memory is taken for them, rather than computed modulo 2^32.

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <tuple>

#include "support/answers.h"
#include "support/exports.h"

namespace {

std::string textOfIteration() {
    char text[64];
    _IterateVoxamApp(sizeof text, text, nullptr, nullptr, nullptr, 3);
    return text;
}

// And that the next small plate is none the worse for it.
TEST(LargeAppTest, IsRefused) {
    constexpr struct {
        int width, height, subdivision, meshFactor, loadCases;
        const char* what;
    } cases[] = {{INT_MAX, 0, 1, 1, 1, "nodes"},
                 {-1, 4, 1, 1, 1, "nodes, of a width that is unsigned"},
                 {65536, 65536, 1, 1, 1, "2^32 elements"},
                 {32768, 32768, 1, 1, 1, "unknowns"},
                 {2, 3, 65536, 1, 1, "cells of the design"},
                 {2, 3, 1, 65536, 1, "cells of the picture"},
                 {1, 1, 256, 256, 1, "2^32 cells of the picture"},
                 {0, 3, 65536, 65536, 1, "element matrices"},
                 {40, 30, 1, 1, INT_MAX, "load cases"},
                 // Above 2^32 by one part in four thousand.
                 {28, 49, 1, 35, 1, "weights of the filter of a picture of modest size"}};
    for (const auto& t : cases) {
        SCOPED_TRACE(t.what);
        _InitVoxamApp(t.width, t.height, t.subdivision, t.meshFactor, 0.5F, t.loadCases, 1);
        EXPECT_EQ(textOfIteration(), test::NO_OPTIMISER);
        _InitVoxamApp(3, 2, 1, 1, 0.5F, 1, 0);
        test::update(test::cantilever(3, 2));
        EXPECT_EQ(textOfIteration(), "");
        _DestroyVoxamApp();
    }
}

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
