#include "driver.h"

#include <getopt.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
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

struct Options {
    uint64_t seed = std::random_device()() % 1000000;
    uint64_t rounds = 0;
    uint64_t minutes = 0;
    std::vector<std::string> arguments;
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

long megabytesAtMost() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

class Run {
public:
    Run(const Soak& soak, const Options& options, std::string command)
        : soak(soak), options(options), command(std::move(command)), out(silenceStandardOutput()) {}

    int all() {
        std::fprintf(out, "seed %llu\n", static_cast<unsigned long long>(options.seed));
        while (!done()) {
            const uint64_t seed = options.seed + rounds;
            setFarewell(seed, rounds + 1);
            alarm(LONGEST_ROUND_IN_SECONDS);
            try {
                calls += soak.round(seed, options.arguments);
            } catch (const Fault& fault) {
                std::fflush(out);
                std::fprintf(stderr, "\nFAULT: %s\n", fault.what());
                sayFarewell();
                return 1;
            } catch (const std::exception& error) {
                std::fprintf(stderr, "%s\n", error.what());
                return 2;
            }
            ++rounds;
            if (seconds() >= nextReport) report();
        }
        alarm(0);
        report();
        std::fclose(out);
        setFarewell(options.seed, rounds);  // should there be leaks
        return 0;
    }

private:
    double seconds() const { return std::chrono::duration<double>(Clock::now() - start).count(); }

    bool done() const {
        return options.rounds > 0 ? rounds == options.rounds
                                  : seconds() >= 60.0 * static_cast<double>(options.minutes);
    }

    void report() {
        std::fprintf(out, "%llu rounds, %llu %s in %.1f minutes, at most %ld MB\n",
                     static_cast<unsigned long long>(rounds),
                     static_cast<unsigned long long>(calls), soak.what.c_str(), seconds() / 60,
                     megabytesAtMost());
        std::fflush(out);
        nextReport = seconds() + REPORT_EVERY_SECONDS;
    }

    // The round alone should do. If the rounds before it matter, it takes them all.
    void setFarewell(uint64_t seed, uint64_t roundsSoFar) const {
        const std::string alone = std::to_string(seed) + " --rounds 1";
        const std::string all =
            std::to_string(options.seed) + " --rounds " + std::to_string(roundsSoFar);
        std::string text = "Repeat it with\n    " + command + " --seed " + alone + "\n";
        if (all != alone)
            text += "or, from the start, with\n    " + command + " --seed " + all + "\n";
        text.resize(std::min(text.size(), farewell.size() - 1));
        std::copy_n(text.c_str(), text.size() + 1, farewell.begin());
    }

    static constexpr double REPORT_EVERY_SECONDS = 10.0;

    const Soak& soak;
    const Options& options;
    const std::string command;
    FILE* const out;
    const Clock::time_point start = Clock::now();
    double nextReport = REPORT_EVERY_SECONDS;
    uint64_t rounds = 0;
    uint64_t calls = 0;
};

std::string usage(const std::string& program, const Soak& soak) {
    std::string text = "Usage: " + program;
    for (const std::string& argument : soak.arguments) text += " " + argument;
    return text + " [--seed N] (--rounds N | --minutes N)\n" + soak.description +
           "\n"
           "  --seed N     seed of the first round, any if left out; the next has N + 1\n"
           "  --rounds N   how many rounds to run\n"
           "  --minutes N  how long to run\n";
}

bool readNumber(const char* text, uint64_t& number) {
    const char* const end = text + std::strlen(text);
    const auto [rest, error] = std::from_chars(text, end, number);
    return error == std::errc() && rest == end;
}

// Returns whether the command line is as usage() says.
bool readOptions(int argc, char** argv, const Soak& soak, Options& options) {
    const std::array<option, 5> known = {{{"seed", required_argument, nullptr, 's'},
                                          {"rounds", required_argument, nullptr, 'r'},
                                          {"minutes", required_argument, nullptr, 'm'},
                                          {"help", no_argument, nullptr, 'h'},
                                          {}}};
    for (int key; (key = getopt_long(argc, argv, "h", known.data(), nullptr)) != -1;) {
        if (key == 'h') {
            std::fputs(usage(argv[0], soak).c_str(), stdout);
            std::exit(0);
        }
        uint64_t* const number = key == 's'   ? &options.seed
                                 : key == 'r' ? &options.rounds
                                 : key == 'm' ? &options.minutes
                                              : nullptr;
        if (!number || !readNumber(optarg, *number)) return false;
    }
    options.arguments.assign(argv + optind, argv + argc);
    return options.arguments.size() == soak.arguments.size() &&
           (options.rounds > 0) != (options.minutes > 0);
}

}  // namespace

int drive(int argc, char** argv, const Soak& soak) {
    Options options;
    if (!readOptions(argc, argv, soak, options)) {
        std::fputs(usage(argv[0], soak).c_str(), stderr);
        return 2;
    }
    watchOverCrashes();
    std::string command = argv[0];
    for (const std::string& argument : options.arguments) command += " " + argument;
    return Run(soak, options, command).all();
}

}  // namespace soak
