#include "ParallelFor.h"

#if defined(VOXAM_PARALLEL_DISPATCH)

#include <dispatch/dispatch.h>

void runTasks(std::size_t count, void* context, void (*task)(void*, std::size_t)) {
    dispatch_apply_f(count, dispatch_get_global_queue(0, 0), context, task);
}

#elif defined(VOXAM_PARALLEL_STD)

#include <algorithm>
#include <atomic>
#include <chrono>
#include <system_error>
#include <thread>
#include <vector>

void runTasks(std::size_t count, void* context, void (*task)(void*, std::size_t)) {
    // Starting threads takes about as long as this: tasks that end sooner are better off without.
    constexpr std::chrono::microseconds START_OF_THREADS(150);
    const auto start = std::chrono::steady_clock::now();
    std::size_t first = 0;
    while (first < count && std::chrono::steady_clock::now() - start < START_OF_THREADS) {
        task(context, first++);
    }
    if (first == count) return;

    std::atomic<std::size_t> next = first;
    const auto work = [&] {
        for (std::size_t index = next++; index < count; index = next++) task(context, index);
    };
    const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::jthread> helpers(std::min(cores, count - first) - 1);
    try {
        for (auto& helper : helpers) helper = std::jthread(work);
    } catch (const std::system_error&) {
        // If the system refuses more threads, the running ones do all the work.
    }
    work();
}

#elif defined(VOXAM_PARALLEL_SERIAL)

void runTasks(std::size_t count, void* context, void (*task)(void*, std::size_t)) {
    for (std::size_t index = 0; index < count; ++index) task(context, index);
}

#else

#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <atomic>
#include <exception>

void runTasks(std::size_t count, void* context, void (*task)(void*, std::size_t)) {
    // Isolated on both sides: a host that calls from within its own tasks, and cancels them, must
    // not cancel these, nor may this thread take up the host's tasks while it waits for them.
    tbb::this_task_arena::isolate([=] {
        tbb::task_group_context independent(tbb::task_group_context::isolated);
        std::atomic<std::size_t> next = 0;
        try {
            tbb::parallel_for(
                std::size_t{0}, count, [&](std::size_t) { task(context, next++); },
                tbb::auto_partitioner(), independent);
        } catch (const std::exception&) {
            // oneTBB reports threads that the system refuses. This one does the remaining tasks.
            for (std::size_t index = next++; index < count; index = next++) task(context, index);
        }
    });
}

#endif
