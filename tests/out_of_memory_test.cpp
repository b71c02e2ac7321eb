// When memory runs out in the middle of a call. Each test lets a call fail at its first allocation,
// at its second, and so on until it needs no more.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "support/answers.h"
#include "support/exports.h"
#include "support/until_enough.h"

namespace {

// How many more allocations of this thread succeed. Below 0 all of them.
thread_local long allowed = -1;

}  // namespace

// Where the compiler sees through one of the replacements only, it takes them for a mismatch.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif

// Replaces those of the whole process, the library's included.
void* operator new(std::size_t size) {
    if (allowed == 0) throw std::bad_alloc();
    if (allowed > 0) --allowed;
    if (void* memory = std::malloc(size > 0 ? size : 1)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace {

using test::FAILED_SCORE, test::untilEnough;

// Runs the call with room for that many allocations.
template <typename Call>
void withAllocations(long count, const Call& call) {
    allowed = count;
    call();
    allowed = -1;
}

struct GamePlate {
    test::Records loads = test::tension(4, 3, 1);
    test::Records supports = test::slidingLeftEdge(3);
    std::vector<float> densities = std::vector<float>(12, 1.0F);
    std::vector<float> values = std::vector<float>(12, 7.0F);

    void create() const {
        _InitVoxamGame(4, 3, 1, 1, loads.count(), loads.data(), supports.count(), supports.data(),
                       1);
    }
    double solve() {
        values.assign(12, 7.0F);
        return _SolveVoxamGame(densities.data(), values.data());
    }
};

TEST(OutOfMemoryTest, AScoreFailsWithZeroesAndTheNextOneSucceeds) {
    GamePlate plate;
    untilEnough([&plate](long count) {
        plate.create();
        double score = 0.0;
        withAllocations(count, [&] { score = plate.solve(); });
        const bool enough = score != FAILED_SCORE;
        EXPECT_TRUE(enough || plate.values == std::vector<float>(12, 0.0F)) << count;
        EXPECT_NEAR(plate.solve(), 12.0, 1e-4) << count;
        return enough;
    });
}

TEST(OutOfMemoryTest, AGameThatCannotBeCreatedIsNone) {
    GamePlate plate;
    untilEnough([&plate](long count) {
        plate.create();
        withAllocations(count, [&] { plate.create(); });
        const bool enough = plate.solve() != FAILED_SCORE;
        EXPECT_TRUE(enough || plate.values == std::vector<float>(12, 7.0F)) << count;
        return enough;
    });
}

struct AnalysedPlate {
    test::Records loads = test::tension(4, 3, 1);
    test::Records supports = test::slidingLeftEdge(3);
    std::vector<double> moduli = std::vector<double>(12, 1.0);
    double compliance = 0.0;

    void create() const {
        _InitVoxamAnalysis(4, 3, loads.count(), loads.data(), supports.count(), supports.data(), 1);
    }
    int solve() {
        compliance = 7;
        return _SolveVoxamAnalysis(moduli.data(), 0, nullptr, &compliance, nullptr, nullptr,
                                   nullptr, nullptr);
    }
};

TEST(OutOfMemoryTest, AnAnalysisFailsWithAStatusAndTheNextOneSucceeds) {
    AnalysedPlate plate;
    for (const bool whileCreating : {true, false}) {
        untilEnough([&](long count) {
            plate.create();
            int status = 0;
            withAllocations(count, [&] {
                if (whileCreating) {
                    plate.create();
                } else {
                    status = plate.solve();
                }
            });
            if (whileCreating) status = plate.solve();
            const bool enough = status == VOXAM_ANALYSIS_SOLVED;
            EXPECT_TRUE(enough || status == VOXAM_ANALYSIS_OUT_OF_MEMORY) << status;
            EXPECT_TRUE(enough || plate.compliance == 7) << count;
            if (whileCreating) plate.create();
            EXPECT_EQ(plate.solve(), VOXAM_ANALYSIS_SOLVED) << count;
            EXPECT_NEAR(plate.compliance, 12.0, 1e-13) << count;
            return enough;
        });
    }
}

struct Iteration {
    double compliance = 0.0;
    char text[64] = "";

    void run(bool withBlob) {
        compliance = withBlob ? _IterateVoxamAppWithBlob(sizeof text, text, nullptr, nullptr,
                                                         nullptr, nullptr, 3)
                              : _IterateVoxamApp(sizeof text, text, nullptr, nullptr, nullptr, 3);
    }
    std::string result(bool withBlob = false) {
        run(withBlob);
        return text;
    }
};

void createApp() {
    static int restarts = 0;
    _InitVoxamApp(6, 4, 1, 1, 0.5F, 1, ++restarts);
}

TEST(OutOfMemoryTest, AnOptimiserThatCannotBeCreatedIsNone) {
    untilEnough([](long count) {
        createApp();
        withAllocations(count, createApp);
        return Iteration().result() != test::NO_OPTIMISER;
    });
}

TEST(OutOfMemoryTest, SettingsThatCannotBeTakenLeaveTheOldOnes) {
    const test::Settings good = test::cantilever(6, 4);
    test::Settings withoutWork = good;
    withoutWork.loads.floats[0] = 0;  // on a support
    untilEnough([&](long count) {
        createApp();
        test::update(good);
        withAllocations(count, [&] { test::update(withoutWork); });
        const std::string text = Iteration().result();
        EXPECT_TRUE(text.empty() || text == test::NO_WORK) << text;
        return !text.empty();
    });
}

TEST(OutOfMemoryTest, AnIterationFailsWithATextAndTheNextOneSucceeds) {
    test::Settings settings = test::cantilever(6, 4);
    settings.blob = {2, 2, 1, 3, 1};
    for (const bool withBlob : {false, true}) {
        untilEnough([&](long count) {
            createApp();
            test::update(settings);
            Iteration limited;
            withAllocations(count, [&] { limited.run(withBlob); });
            const bool enough = limited.compliance != -1.0;
            EXPECT_STREQ(limited.text, enough ? "" : "std::bad_alloc");
            Iteration next;
            EXPECT_EQ(next.result(withBlob), "") << count;
            EXPECT_GT(next.compliance, 0.0) << count;
            return enough;
        });
    }
}

}  // namespace
