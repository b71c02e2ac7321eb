#include "caller.h"

namespace soak {

Worker::~Worker() {
    task = nullptr;
    wanted.release();
    thread.join();
}

void Worker::make(const Call& call, const test::LoadedLibrary& library) {
    task = [&] { call(library); };
    wanted.release();
    done.acquire();
}

void Worker::work() {
    for (;;) {
        wanted.acquire();
        if (!task) return;
        task();
        done.release();
    }
}

void Caller::setManner(Manner newManner, uint64_t seed) {
    manner = newManner;
    dice = Dice(seed);
}

void Caller::call(const Call& body) {
    ++calls;
    if (manner == RELOADING && dice.oneIn(4)) {
        library.reset();
        library = std::make_unique<test::LoadedLibrary>(path);
    }
    if (manner != FROM_THREADS_IN_TURN) return body(*library);
    // One that has never called before, or one of those that call all the time.
    if (dice.oneIn(8)) return std::thread(body, std::cref(*library)).join();
    dice.pickFrom(workers).make(body, *library);
}

}  // namespace soak
