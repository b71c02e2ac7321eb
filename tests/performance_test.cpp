// The performance test's tables.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "PerformanceTest.h"
#include "support/matrices.h"
#include "voxam.h"

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::vector<std::string> profile(int nelx, int nely) {
    testing::internal::CaptureStdout();
    profileNumberOfIterations(nelx, nely, {1, 3});
    return linesOf(testing::internal::GetCapturedStdout());
}

TEST(PerformanceTest, PrintsALinePerStrategyAndACellPerCount) {
    const std::string cells = "(\t[0-9.e+-]+ \\([0-9.e+-]+\\)){2}";
    using testing::MatchesRegex;
    EXPECT_THAT(profile(6, 4),
                testing::ElementsAre("Profile number of iterations 6x4", "Iterations:\t1\t3",
                                     MatchesRegex("Allways create triplet " + cells),
                                     MatchesRegex("Reuse sparse \\(sequential\\)" + cells),
                                     MatchesRegex("Reuse sparse \\(parallel\\) " + cells),
                                     MatchesRegex("Reuse sparse \\(parallel build\\) " + cells)));
}

// What is timed is the assembly of the plate, and all of it.
TEST(PerformanceTest, AssemblesThePlate) {
    const double modulus = 0.01F + (1.0 - 0.01F) * 0.125;
    for (const auto& [nelx, nely] : {std::pair{1, 2}, {4, 3}, {5, 2}}) {
        for (const AssemblyStrategy& strategy : ASSEMBLY_STRATEGIES) {
            for (const int iterations : {1, 3}) {
                const auto factor = [&, columns = nelx, rows = nely](unsigned e) {
                    if (!strategy.reuse) return modulus;
                    const int x = static_cast<int>(e) / (2 * rows) / 2;
                    const bool leftOut = strategy.parallel && columns % 2 == 1 && x == columns - 1;
                    return modulus * (leftOut ? 1 : iterations);
                };
                double buildTime = 0.0;
                kmat::SparseMatrix K(nullptr);
                runTest(nelx, nely, strategy, iterations, buildTime, &K);
                const test::Matrix expected = test::plateStiffness(
                    static_cast<unsigned>(nelx), static_cast<unsigned>(nely), 2, factor);
                EXPECT_LT(distance(test::valuesOf(K), expected), 1e-6)
                    << strategy.label << nelx << " " << iterations;
            }
        }
    }
}

// The time of a cell contains that of its builds, and both are times.
TEST(PerformanceTest, BuildsArePartOfTheTotal) {
    for (size_t line = 2; line < 6; ++line) {
        const std::string text = profile(12, 8)[line];
        std::istringstream cells(text.substr(text.find('\t')));
        for (int i = 0; i < 2; ++i) {
            double total = -1.0;
            double build = -1.0;
            char parenthesis = 0;
            cells >> total >> parenthesis >> build >> parenthesis;
            EXPECT_GE(build, 0.0) << text;
            EXPECT_GE(total, build) << text;
        }
    }
}

TEST(PerformanceTest, ExportedTestProfilesFivePlates) {
    testing::internal::CaptureStdout();
    _VoxamPerformanceTest();
    std::vector<std::string> titles;
    for (const std::string& line : linesOf(testing::internal::GetCapturedStdout())) {
        if (line.starts_with("Profile")) titles.push_back(line.substr(line.rfind(' ') + 1));
        if (line.starts_with("Iterations")) {
            EXPECT_EQ(line, "Iterations:\t1\t2\t4\t8");
        }
    }
    EXPECT_EQ(titles, (std::vector<std::string>{"8x12", "12x18", "16x24", "20x30", "30x45"}));
}

}  // namespace
