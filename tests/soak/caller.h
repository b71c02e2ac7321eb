// Hosts call from one thread, from several in turn, or load the library anew all the time: the
// results have to be the same bits.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "../support/loaded_library.h"
#include "dice.h"

namespace soak {

/// A thread that does one thing at a time for somebody who waits for it.
class Worker {
public:
    Worker();
    ~Worker();
    void run(const std::function<void()>& task);

private:
    void work();

    std::mutex mutex;
    std::condition_variable changed;
    const std::function<void()>* task = nullptr;
    bool ending = false;
    std::thread thread;
};

class Caller {
public:
    enum Manner { FROM_ONE_THREAD, FROM_THREADS_IN_TURN, RELOADING };

    explicit Caller(std::string libraryPath);

    /// How calls are made from now on, and the seed of the choices that takes.
    void setManner(Manner newManner, uint64_t seed);

    /// Makes one call.
    void call(const std::function<void(const test::LoadedLibrary&)>& body);

    uint64_t getCalls() const { return calls; }

private:
    const std::string path;
    std::unique_ptr<test::LoadedLibrary> library;
    std::vector<std::unique_ptr<Worker>> workers;
    Manner manner = FROM_ONE_THREAD;
    Dice dice{0};
    uint64_t calls = 0;
};

}  // namespace soak
