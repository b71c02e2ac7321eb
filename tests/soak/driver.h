// What the soaks share: the options, rounds with a seed each, a progress line, and after a fault
// the command that repeats it.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <string>

#include "fault.h"

namespace soak {

/// Parses the command line, to whose arguments that of the program are added already, and runs
/// round after round, with the seeds N, N + 1, ..., until the time or the number of rounds is up.
/// All that a round does depends on the arguments and its seed; it returns how many things such as
/// "calls" it made, and throws Fault. Returns the status for main().
int drive(CLI::App& app, int argc, char** argv, const std::string& things,
          const std::function<uint64_t(uint64_t seed)>& round);

}  // namespace soak
