#include "interruption.h"

#include <array>
#include <csignal>

namespace {

constexpr std::array<int, 2> watched = {SIGINT, SIGTERM};
volatile std::sig_atomic_t received = 0;

extern "C" void remember(int signal) {
    received = signal;
    for (const int each : watched) std::signal(each, SIG_DFL);
}

}  // namespace

void watchForInterruption() {
    struct sigaction action = {};
    action.sa_handler = remember;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int each : watched) sigaction(each, &action, nullptr);
}

int interruption() { return received; }
