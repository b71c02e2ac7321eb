#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>
#include <vector>

#include "ParallelFor.h"

namespace {

TEST(ParallelForTest, RunsEveryTaskOnceBeforeItReturns) {
    for (const std::size_t count : {0U, 1U, 2U, 3U, 1000U}) {
        std::vector<std::atomic<int>> runs(count);
        parallelFor(count, [&runs](std::size_t i) { ++runs[i]; });
        for (const auto& run : runs) EXPECT_EQ(run, 1) << count;
    }
}

TEST(ParallelForTest, RunsWithinATaskOfItsOwn) {
    std::atomic<int> runs = 0;
    parallelFor(4, [&runs](std::size_t) { parallelFor(5, [&runs](std::size_t) { ++runs; }); });
    EXPECT_EQ(runs, 20);
}

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

bool refusesThreads = false;
int refused = 0;

TEST(ParallelForTest, RunsEveryTaskOnceWhenTheSystemRefusesThreads) {
    refusesThreads = true;
    std::vector<std::atomic<int>> runs(1000);
    parallelFor(runs.size(), [&runs](std::size_t i) {
        ++runs[i];
        std::this_thread::sleep_for(std::chrono::microseconds(10));
    });
    refusesThreads = false;
    for (const auto& run : runs) EXPECT_EQ(run, 1);
    if (refused == 0) GTEST_SKIP() << "nothing wanted another thread";
}

#endif

}  // namespace

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

// Takes the place of the C library's function for oneTBB and the standard library.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*run)(void*), void* argument) noexcept {
    static const auto create =
        reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    if (!refusesThreads) return create(thread, attributes, run, argument);
    ++refused;
    return EAGAIN;
}

#endif
