// A host of the optimiser that looks at everything that comes back.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "support/answers.h"
#include "support/exports.h"
#include "support/guarded.h"

namespace test {

struct Result {
    double compliance;
    std::string text;
    std::vector<float> picture;
    std::vector<int> mask;
    double change;
};

enum Kind { PLAIN, WITH_BLOB };

/// The host's idea of the optimiser that is alive.
struct Host {
    int nelx = 0;
    int nely = 0;
    int refinement = 1;
    inline static int restarts = 100;

    void init(int width, int height, int subdivision = 1, int meshFactor = 1, float volume = 0.5F,
              int restartId = ++restarts) {
        nelx = width;
        nely = height;
        refinement = subdivision * meshFactor;
        _InitVoxamApp(width, height, subdivision, meshFactor, volume, 2, restartId);
    }
    /// One iteration into guarded buffers; whatever comes back is checked for what always holds.
    Result iterate(Kind kind = PLAIN, float penalty = 3.0F, int length = 40) const {
        const auto cells = static_cast<std::size_t>(nelx) * static_cast<std::size_t>(nely);
        Guarded<char> text(static_cast<std::size_t>(std::max(length, 0)));
        Guarded<float> picture(cells * static_cast<std::size_t>(refinement * refinement));
        Guarded<float> times(8);
        Guarded<double> change(1);
        Guarded<int> mask(cells);
        auto* stat = reinterpret_cast<RuntimeStat*>(times.data());
        const double compliance =
            kind == PLAIN ? _IterateVoxamApp(length, text.data(), picture.data(), change.data(),
                                             stat, penalty)
                          : _IterateVoxamAppWithBlob(length, text.data(), picture.data(),
                                                     change.data(), stat, mask.data(), penalty);
        EXPECT_TRUE(text.isIntact() && picture.isIntact() && times.isIntact() &&
                    change.isIntact() && mask.isIntact());
        const auto end = std::find(text.begin(), text.end(), '\0');
        EXPECT_EQ(end == text.end(), length < 1);
        Result result = {compliance, std::string(text.begin(), end), picture.copy(), mask.copy(),
                         *change.begin()};
        if (!result.text.empty()) {
            EXPECT_TRUE(picture.untouched());
            EXPECT_TRUE(times.untouched());
        } else if (length > 1) {
            expectPublished(times.copy(), result.picture);
        }
        return result;
    }
    void expectGood(const Settings& settings, int iterations = 3) const {
        update(settings);
        for (int i = 0; i < iterations; ++i) {
            const Result result = iterate();
            EXPECT_EQ(result.text, "");
            EXPECT_GT(result.compliance, 0.0);
            EXPECT_GE(result.change, 0.0);
            EXPECT_LE(result.change, 1.0);
            for (const float v : result.picture) EXPECT_TRUE(v > -1e-6 && v < 1 + 1e-6) << v;
        }
    }

private:
    // The times in the order of RuntimeStat.
    static void expectPublished(const std::vector<float>& times,
                                const std::vector<float>& picture) {
        for (const float time : times) EXPECT_GE(time, 0.0F);
        EXPECT_GE(times[0] + 1e-3F, times[1] + times[2] + times[6] + times[7]);
        EXPECT_GE(times[2] + 1e-3F, times[3] + times[4] + times[5]);
        for (const float v : picture) EXPECT_TRUE(std::isfinite(v));
    }
};

}  // namespace test
