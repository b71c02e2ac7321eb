// A host of the optimiser that looks at everything that comes back.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "support/exports.h"

namespace test {

inline const std::string NO_OPTIMISER = "No optimiser: call _InitVoxamApp first";
inline const std::string UNSOLVABLE = "Change load / support";
inline const std::string NOT_HELD = "Change load/support";
inline const std::string NO_WORK = "Load cannot be on top of support";

/// An output buffer between guard zones.
template <typename T>
class Guarded {
public:
    static constexpr T UNTOUCHED = 77;

    explicit Guarded(int size) : values(static_cast<size_t>(size) + 2 * GUARD, UNTOUCHED) {}
    T* data() { return values.data() + GUARD; }
    std::vector<T> take() const {
        for (size_t i = 0; i < GUARD; ++i) {
            EXPECT_EQ(values[i], UNTOUCHED);
            EXPECT_EQ(values[values.size() - 1 - i], UNTOUCHED);
        }
        return {values.begin() + GUARD, values.end() - GUARD};
    }

private:
    static constexpr size_t GUARD = 16;
    std::vector<T> values;
};

template <typename T>
bool untouched(const std::vector<T>& values) {
    return std::ranges::all_of(values, [](T v) { return v == Guarded<T>::UNTOUCHED; });
}

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
        const int cells = nelx * nely;
        Guarded<char> text(std::max(length, 0));
        Guarded<float> picture(cells * refinement * refinement);
        Guarded<float> times(8);
        Guarded<double> change(1);
        Guarded<int> mask(cells);
        auto* stat = reinterpret_cast<RuntimeStat*>(times.data());
        const double compliance =
            kind == PLAIN ? _IterateVoxamApp(length, text.data(), picture.data(), change.data(),
                                             stat, penalty)
                          : _IterateVoxamAppWithBlob(length, text.data(), picture.data(),
                                                     change.data(), stat, mask.data(), penalty);
        const std::vector<char> written = text.take();
        const auto end = std::find(written.begin(), written.end(), '\0');
        EXPECT_EQ(end == written.end(), length < 1);
        Result result = {compliance, std::string(written.begin(), end), picture.take(), mask.take(),
                         change.take()[0]};
        if (!result.text.empty()) {
            EXPECT_TRUE(untouched(result.picture));
            EXPECT_TRUE(untouched(times.take()));
        } else if (length > 1) {
            expectPublished(times.take(), result.picture);
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
