// Random hosts of the library, for as long as one likes.

#include <memory>

#include "caller.h"
#include "driver.h"
#include "hosts.h"

namespace {

using soak::Caller;
using soak::Dice;

// What a host does, from the first call on. Returns a digest of all answers.
uint64_t play(uint64_t seed, Caller& caller, Caller::Manner manner) {
    Dice dice(seed);
    caller.setManner(manner, seed);
    soak::CheckedLibrary checked(caller);
    if (dice.oneIn(2))
        soak::playPlausibleHost(checked, dice);
    else
        soak::playWildHost(checked, dice);
    return checked.digest();
}

uint64_t playTwice(uint64_t seed, Caller& caller) {
    const uint64_t before = caller.getCalls();
    const auto manner = seed % 2 == 0 ? Caller::FROM_THREADS_IN_TURN : Caller::RELOADING;
    const uint64_t first = play(seed, caller, Caller::FROM_ONE_THREAD);
    const uint64_t second = play(seed, caller, manner);
    soak::require(first == second, manner == Caller::RELOADING
                                       ? "a library that was loaded anew gives the same bits"
                                       : "calls from threads in turn give the same bits");
    return caller.getCalls() - before;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app(
        "Plays random hosts of the library, plausible ones and wild ones, and checks each answer\n"
        "against the contract. Each plays twice: from one thread, and from several in turn or "
        "with\n"
        "the library loaded anew now and then.");
    std::string library;
    app.add_option("LIBRARY", library, "path of libvoxam.so")->required();
    std::unique_ptr<Caller> caller;
    return soak::drive(app, argc, argv, "calls", [&](uint64_t seed) {
        if (!caller) caller = std::make_unique<Caller>(library);
        return playTwice(seed, *caller);
    });
}
