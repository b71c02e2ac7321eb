#include "interruption.h"

#include <array>
#include <csignal>

namespace {

constexpr std::array<int, 2> WATCHED = {SIGINT, SIGTERM};
volatile std::sig_atomic_t received = 0;

extern "C" void remember(int signal) {
    received = signal;
    for (const int each : WATCHED) std::signal(each, SIG_DFL);
}

}  // namespace

void watchForInterruption() {
    struct sigaction action = {};
    action.sa_handler = remember;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int each : WATCHED) sigaction(each, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

int interruption() { return received; }
