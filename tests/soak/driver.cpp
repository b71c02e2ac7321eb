#include "driver.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

// Of the sanitizers' common runtime; null without one.
extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*callback)());

// The programs are run by hand, to repeat a fault, as well as by scripts: hence the options here.
extern "C" const char* __asan_default_options();
extern "C" const char* __tsan_default_options();
extern "C" const char* __ubsan_default_options();

const char* __asan_default_options() {
    return "detect_stack_use_after_return=1:strict_string_checks=1";
}
const char* __tsan_default_options() {
    return "halt_on_error=1:suppressions='" VOXAM_TSAN_SUPPRESSIONS "'";
}
const char* __ubsan_default_options() { return "print_stacktrace=1"; }

namespace soak {

namespace {

using Clock = std::chrono::steady_clock;

// No round takes seconds, so one that has not ended by now never will.
constexpr unsigned LONGEST_ROUND_IN_SECONDS = 600;
constexpr double REPORT_EVERY_SECONDS = 10.0;

struct Options {
    uint64_t seed = std::random_device()() % 1000000;
    uint64_t rounds = 0;
    uint64_t minutes = 0;
};

// What to print should the process die. In place, because then nothing can be allocated any more.
std::array<char, 4096> farewell;

void say(std::string_view text) {
    [[maybe_unused]] const auto written = write(STDERR_FILENO, text.data(), text.size());
}

void sayFarewell() { say(farewell.data()); }

void onSignal(int number) {
    say(number == SIGALRM ? "\nFAULT: a call does not end\n" : "\nFAULT: a call crashes\n");
    sayFarewell();
    if (number == SIGALRM) _exit(1);
    std::signal(number, SIG_DFL);
    std::raise(number);
}

void watchOverCrashes() {
    std::vector<int> signals = {SIGABRT, SIGALRM};
    if (__sanitizer_set_death_callback)
        __sanitizer_set_death_callback(sayFarewell);
    else
        signals.insert(signals.end(), {SIGSEGV, SIGBUS, SIGFPE, SIGILL});
    for (const int number : signals) std::signal(number, onSignal);
}

// The library, and CHOLMOD in it, print what they have to say on standard output. The soak's own
// lines keep the stream that there was.
FILE* silenceStandardOutput() {
    FILE* own = fdopen(dup(STDOUT_FILENO), "w");
    if (!own || !std::freopen("/dev/null", "w", stdout)) {
        std::perror("/dev/null");
        std::exit(2);
    }
    return own;
}

class Run {
public:
    Run(const Options& options, std::string command, std::string things)
        : options(options), command(std::move(command)), things(std::move(things)) {}

    int all(const std::function<uint64_t(uint64_t seed)>& round) {
        std::fprintf(out, "seed %s\n", std::to_string(options.seed).c_str());
        for (; !isOver(); ++rounds) {
            setFarewell(options.seed + rounds, rounds + 1);
            alarm(LONGEST_ROUND_IN_SECONDS);
            try {
                count += round(options.seed + rounds);
            } catch (const Fault& fault) {
                std::fprintf(stderr, "\nFAULT: %s\n", fault.what());
                sayFarewell();
                return 1;
            } catch (const std::exception& error) {
                std::fprintf(stderr, "%s\n", error.what());
                return 2;
            }
            if (seconds() >= nextReport) report();
        }
        alarm(0);
        report();
        setFarewell(options.seed, rounds);  // should there be leaks
        return 0;
    }

private:
    double seconds() const { return std::chrono::duration<double>(Clock::now() - start).count(); }

    bool isOver() const {
        return options.rounds > 0 ? rounds == options.rounds
                                  : seconds() >= 60.0 * static_cast<double>(options.minutes);
    }

    void report() {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::fprintf(out, "%s rounds, %s %s in %.1f minutes, at most %ld MB\n",
                     std::to_string(rounds).c_str(), std::to_string(count).c_str(), things.c_str(),
                     seconds() / 60, usage.ru_maxrss / 1024);
        std::fflush(out);
        nextReport = seconds() + REPORT_EVERY_SECONDS;
    }

    // The round alone should do. If the rounds before it matter, it takes them all.
    void setFarewell(uint64_t seed, uint64_t roundsSoFar) const {
        const auto repeated = [&](uint64_t first, uint64_t number) {
            return "    " + command + " --seed " + std::to_string(first) + " --rounds " +
                   std::to_string(number) + "\n";
        };
        std::string text = "Repeat it with\n" + repeated(seed, 1);
        if (roundsSoFar > 1)
            text += "or, from the start, with\n" + repeated(options.seed, roundsSoFar);
        text.resize(std::min(text.size(), farewell.size() - 1));
        std::copy_n(text.c_str(), text.size() + 1, farewell.begin());
    }

    const Options& options;
    const std::string command;
    const std::string things;
    FILE* const out = silenceStandardOutput();
    const Clock::time_point start = Clock::now();
    double nextReport = REPORT_EVERY_SECONDS;
    uint64_t rounds = 0;
    uint64_t count = 0;
};

// The command without its options.
std::string commandOf(const CLI::App& app, const char* program) {
    std::string command = program;
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_positional()) continue;
        for (const std::string& argument : option->results()) command += " " + argument;
    }
    return command;
}

}  // namespace

int drive(CLI::App& app, int argc, char** argv, const std::string& things,
          const std::function<uint64_t(uint64_t seed)>& round) {
    Options options;
    app.add_option("--seed", options.seed, "seed of the first round, any if left out");
    CLI::App* const length = app.add_option_group("Length")->require_option(1);
    length->add_option("--rounds", options.rounds, "how many rounds to run")
        ->check(CLI::PositiveNumber);
    length->add_option("--minutes", options.minutes, "how long to run")->check(CLI::PositiveNumber);
    CLI11_PARSE(app, argc, argv);
    watchOverCrashes();
    return Run(options, commandOf(app, argv[0]), things).all(round);
}

}  // namespace soak
