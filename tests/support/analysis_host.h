// A host of the analysis that looks at everything that comes back.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "support/guarded.h"
#include "support/plates.h"
#include "voxam.h"

namespace test {

struct Analysis {
    int status;
    std::string text;
    std::vector<double> compliances;
    std::vector<double> displacements;
    std::vector<double> energies;
    std::vector<double> stresses;
    std::vector<unsigned char> loose;
};

class AnalysisHost {
public:
    AnalysisHost(unsigned nelx, unsigned nely, const Records& loads, const Records& supports,
                 unsigned loadCases = 1)
        : nelx(nelx), nely(nely), cases(loadCases) {
        _InitVoxamAnalysis(static_cast<int>(nelx), static_cast<int>(nely), loads.count(),
                           loads.data(), supports.count(), supports.data(),
                           static_cast<int>(loadCases));
    }
    AnalysisHost(const AnalysisHost&) = delete;
    AnalysisHost& operator=(const AnalysisHost&) = delete;
    ~AnalysisHost() { _DestroyVoxamAnalysis(); }

    std::vector<double> solid() const { return std::vector<double>(std::size_t{nelx} * nely, 1.0); }

    /// Solves into guarded arrays; whatever comes back is checked for what always holds.
    Analysis solve(const std::vector<double>& moduli) const {
        const std::size_t elements = std::size_t{nelx} * nely;
        Guarded<char> text(160);
        Guarded<double> compliances(cases);
        Guarded<double> displacements(cases * 2 * (nelx + 1) * (nely + 1));
        Guarded<double> energies(cases * elements);
        Guarded<double> stresses(3 * cases * elements);
        Guarded<unsigned char> loose(elements);
        const int status = _SolveVoxamAnalysis(moduli.data(), 160, text.data(), compliances.data(),
                                               displacements.data(), energies.data(),
                                               stresses.data(), loose.data());
        EXPECT_TRUE(text.isIntact() && compliances.isIntact() && displacements.isIntact() &&
                    energies.isIntact() && stresses.isIntact() && loose.isIntact());
        const Analysis result = {status,
                                 std::string(text.begin(), std::find(text.begin(), text.end(), 0)),
                                 compliances.copy(),
                                 displacements.copy(),
                                 energies.copy(),
                                 stresses.copy(),
                                 loose.copy()};
        EXPECT_EQ(result.text.empty(), status == VOXAM_ANALYSIS_SOLVED) << result.text;
        if (status > VOXAM_ANALYSIS_LOOSE_PART) {
            EXPECT_TRUE(compliances.untouched() && displacements.untouched() &&
                        energies.untouched() && stresses.untouched());
            return result;
        }
        for (std::size_t k = 0; k < cases; ++k) {
            double sum = 0.0;
            for (std::size_t e = 0; e < elements; ++e) {
                EXPECT_GE(result.energies[k * elements + e], 0.0);
                sum += result.energies[k * elements + e];
            }
            if (sum != result.compliances[k]) {  // both may be infinite
                EXPECT_NEAR(sum, result.compliances[k], 1e-13 * sum);
            }
        }
        return result;
    }

private:
    unsigned nelx;
    unsigned nely;
    std::size_t cases;
};

}  // namespace test
