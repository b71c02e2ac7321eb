#include "caller.h"

#include <utility>

namespace soak {

Worker::Worker() : thread([this] { work(); }) {}

Worker::~Worker() {
    {
        const std::lock_guard lock(mutex);
        ending = true;
    }
    changed.notify_all();
    thread.join();
}

void Worker::run(const std::function<void()>& newTask) {
    std::unique_lock lock(mutex);
    task = &newTask;
    changed.notify_all();
    changed.wait(lock, [this] { return !task; });
}

void Worker::work() {
    std::unique_lock lock(mutex);
    for (;;) {
        changed.wait(lock, [this] { return task || ending; });
        if (!task) return;
        (*task)();
        task = nullptr;
        changed.notify_all();
    }
}

Caller::Caller(std::string libraryPath)
    : path(std::move(libraryPath)), library(std::make_unique<test::LoadedLibrary>(path)) {
    constexpr int workerCount = 3;
    for (int i = 0; i < workerCount; ++i) workers.push_back(std::make_unique<Worker>());
}

void Caller::setManner(Manner newManner, uint64_t seed) {
    manner = newManner;
    dice = Dice(seed);
}

void Caller::call(const std::function<void(const test::LoadedLibrary&)>& body) {
    ++calls;
    const auto task = [&] { body(*library); };
    if (manner == RELOADING && dice.oneIn(4)) {
        library.reset();
        library = std::make_unique<test::LoadedLibrary>(path);
    }
    if (manner != FROM_THREADS_IN_TURN) return task();
    if (dice.oneIn(8)) return std::thread(task).join();  // one that has never called before
    dice.pickFrom(workers)->run(task);
}

}  // namespace soak
