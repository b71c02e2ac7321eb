// Hosts call from one thread, from several in turn, or load the library anew all the time: the
// results have to be the same bits.
#pragma once

#include <functional>
#include <memory>
#include <semaphore>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "../support/loaded_library.h"
#include "dice.h"

namespace soak {

using Call = std::function<void(const test::LoadedLibrary&)>;

/// A thread that makes one call at a time for somebody who waits for it.
class Worker {
public:
    ~Worker();
    void make(const Call& call, const test::LoadedLibrary& library);

private:
    void work();

    std::function<void()> task;
    std::binary_semaphore wanted{0};
    std::binary_semaphore done{0};
    std::thread thread{[this] { work(); }};
};

class Caller {
public:
    enum Manner { FROM_ONE_THREAD, FROM_THREADS_IN_TURN, RELOADING };

    explicit Caller(std::string libraryPath) : path(std::move(libraryPath)) {}

    /// How calls are made from now on, and the seed of the choices that takes.
    void setManner(Manner newManner, uint64_t seed);

    /// Makes one call.
    void call(const Call& body);

    uint64_t getCalls() const { return calls; }

private:
    const std::string path;
    std::unique_ptr<test::LoadedLibrary> library = std::make_unique<test::LoadedLibrary>(path);
    std::vector<Worker> workers = std::vector<Worker>(3);
    Manner manner = FROM_ONE_THREAD;
    Dice dice{0};
    uint64_t calls = 0;
};

}  // namespace soak
