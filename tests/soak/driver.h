// What the soaks share: the options, rounds with a seed each, a progress line, and after a fault the
// command that repeats it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "fault.h"

namespace soak {

struct Soak {
    /// For --help.
    std::string description;
    /// Names of the arguments beside the options; as many have to be given.
    std::vector<std::string> arguments;
    /// What a round counts, such as "calls".
    std::string what;
    /// One round. But for the arguments everything in it depends on the seed. Returns how many calls
    /// it made; throws Fault.
    std::function<uint64_t(uint64_t seed, const std::vector<std::string>& arguments)> round;
};

/// Parses the command line and runs round after round, with the seeds N, N + 1, ..., until the time
/// or the number of rounds is up. Returns the status for main().
int drive(int argc, char** argv, const Soak& soak);

}  // namespace soak
