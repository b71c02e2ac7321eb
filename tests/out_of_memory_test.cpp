// When memory runs out in the middle of a call. Each test lets a call fail at its first allocation,
// at its second, and so on until it needs no more.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "support/answers.h"
#include "support/exports.h"

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

using test::FAILED_SCORE;
constexpr long MOST_ALLOCATIONS = 1000;

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
    double solve() { return _SolveVoxamGame(densities.data(), values.data()); }
};

TEST(OutOfMemoryTest, AScoreFailsWithZeroesAndTheNextOneSucceeds) {
    GamePlate plate;
    long count = 0;
    for (double score = FAILED_SCORE; score == FAILED_SCORE; ++count) {
        ASSERT_LT(count, MOST_ALLOCATIONS);
        plate.create();
        plate.values.assign(12, 7.0F);
        withAllocations(count, [&] { score = plate.solve(); });
        if (score == FAILED_SCORE) {
            EXPECT_EQ(plate.values, std::vector<float>(12, 0.0F)) << count;
        }
        EXPECT_NEAR(plate.solve(), 12.0, 1e-4) << count;
    }
    EXPECT_GT(count, 1);
    _DestroyVoxamGame();
}

TEST(OutOfMemoryTest, AGameThatCannotBeCreatedIsNone) {
    GamePlate plate;
    long count = 0;
    for (double score = FAILED_SCORE; score == FAILED_SCORE; ++count) {
        ASSERT_LT(count, MOST_ALLOCATIONS);
        plate.create();
        withAllocations(count, [&] { plate.create(); });
        plate.values.assign(12, 7.0F);
        score = plate.solve();
        if (score == FAILED_SCORE) {
            EXPECT_EQ(plate.values, std::vector<float>(12, 7.0F)) << count;
        }
    }
    EXPECT_GT(count, 1);
    _DestroyVoxamGame();
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
    Iteration iteration;
    long count = 0;
    for (std::string text = test::NO_OPTIMISER; text == test::NO_OPTIMISER; ++count) {
        ASSERT_LT(count, MOST_ALLOCATIONS);
        createApp();
        withAllocations(count, createApp);
        text = iteration.result();
    }
    EXPECT_GT(count, 1);
    _DestroyVoxamApp();
}

TEST(OutOfMemoryTest, SettingsThatCannotBeTakenLeaveTheOldOnes) {
    const test::Settings good = test::cantilever(6, 4);
    test::Settings withoutWork = good;
    withoutWork.loads.floats[0] = 0;  // on a support
    Iteration iteration;
    long count = 0;
    for (std::string text; text.empty(); ++count) {
        ASSERT_LT(count, MOST_ALLOCATIONS);
        createApp();
        test::update(good);
        withAllocations(count, [&] { test::update(withoutWork); });
        text = iteration.result();
        EXPECT_TRUE(text.empty() || text == test::NO_WORK) << text;
    }
    EXPECT_GT(count, 1);
    _DestroyVoxamApp();
}

TEST(OutOfMemoryTest, AnIterationFailsWithATextAndTheNextOneSucceeds) {
    test::Settings settings = test::cantilever(6, 4);
    settings.blob = {2, 2, 1, 3, 1};
    for (const bool withBlob : {false, true}) {
        Iteration iteration;
        long count = 0;
        for (iteration.compliance = -1.0; iteration.compliance == -1.0; ++count) {
            ASSERT_LT(count, MOST_ALLOCATIONS);
            createApp();
            test::update(settings);
            withAllocations(count, [&] { iteration.run(withBlob); });
            const Iteration limited = iteration;
            EXPECT_STREQ(limited.text, limited.compliance == -1.0 ? "std::bad_alloc" : "");
            EXPECT_EQ(iteration.result(withBlob), "") << count;
            EXPECT_GT(iteration.compliance, 0.0) << count;
            iteration = limited;
        }
        EXPECT_GT(count, 1);
    }
    _DestroyVoxamApp();
}

}  // namespace
