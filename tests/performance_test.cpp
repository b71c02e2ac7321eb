// The performance test's tables.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>

#include "PerformanceTest.h"
#include "support/matrices.h"
#include "voxam.h"

namespace {

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

// A line per strategy, and in it a cell per count: the total, which contains the time of the
// builds.
TEST(PerformanceTest, PrintsATableForEachOfFivePlates) {
    testing::internal::CaptureStdout();
    const std::ios_base::fmtflags hosts = std::cout.flags();
    std::cout << std::hex << std::showpos << std::setw(30);  // what a host may have left
    _VoxamPerformanceTest();
    std::cout.flags(hosts);
    std::cout.width(0);
    std::istringstream lines(testing::internal::GetCapturedStdout());
    std::string line;
    const auto next = [&] { return std::getline(lines, line) ? line : "the end"; };
    for (const char* plate : {"8x12", "12x18", "16x24", "20x30", "30x45"}) {
        EXPECT_EQ(next(), std::string("Profile number of iterations ") + plate);
        EXPECT_EQ(next(), "Iterations:\t1\t2\t4\t8");
        for (const char* label :
             {"Allways create triplet ", "Reuse sparse \\(sequential\\)",
              "Reuse sparse \\(parallel\\) ", "Reuse sparse \\(parallel build\\) "}) {
            const std::string cells = "(\t[0-9.e+-]+ \\([0-9.e+-]+\\)){4}";
            ASSERT_THAT(next(), testing::MatchesRegex(label + cells));
            std::istringstream numbers(line.substr(line.find('\t')));
            for (int i = 0; i < 4; ++i) {
                double total = 0.0;
                double build = 0.0;
                char parenthesis = 0;
                numbers >> total >> parenthesis >> build >> parenthesis;
                EXPECT_GE(build, 0.0) << line;
                EXPECT_GE(total, build) << line;
            }
        }
    }
    EXPECT_EQ(next(), "the end");
}

}  // namespace
