// The one seam between the solvers and the platform's threads.
#pragma once

#include <cstddef>

/// Runs task(context, 0) .. task(context, count - 1), in any order and possibly at the same time,
/// and returns when all are done. A task must not throw and must not call CHOLMOD or BLAS, whose
/// workspace is shared and unlocked.
void runTasks(std::size_t count, void* context, void (*task)(void* context, std::size_t index));

/// runTasks() for any callable that takes an index. Allocates nothing of its own.
template <typename Task>
void parallelFor(std::size_t count, const Task& task) {
    runTasks(count, const_cast<Task*>(&task),
             [](void* context, std::size_t index) { (*static_cast<const Task*>(context))(index); });
}
