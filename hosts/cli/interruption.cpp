#include "interruption.h"

#include <array>
#include <csignal>

namespace {

constexpr std::array<int, 3> WATCHED = {SIGINT, SIGTERM, SIGHUP};
volatile std::sig_atomic_t received = 0;

// nohup asks a program to ignore SIGHUP. A shell does so with SIGINT for jobs in the background,
// which a person may still want to end by it.
bool staysIgnored(int signal) {
    struct sigaction action = {};
    return signal == SIGHUP && sigaction(signal, nullptr, &action) == 0 &&
           action.sa_handler == SIG_IGN;
}

extern "C" void remember(int signal) {
    received = signal;
    for (const int each : WATCHED)
        if (!staysIgnored(each)) std::signal(each, SIG_DFL);
}

}  // namespace

void watchForInterruption() {
    struct sigaction action = {};
    action.sa_handler = remember;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int each : WATCHED)
        if (!staysIgnored(each)) sigaction(each, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

int interruption() { return received; }
