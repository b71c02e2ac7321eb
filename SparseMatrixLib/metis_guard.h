#pragma once

#include <csignal>

namespace kmat {

/// Keeps what METIS would change in the host's process. METIS orders the largest plates. It seeds
/// the generator of rand(), and sets handlers of SIGABRT and SIGTERM, which it puts back without
/// the host's flags. While one of these lives, rand() and random() have numbers of their own. Both
/// are one for the process: a host's other threads that call them meanwhile get these numbers too,
/// and change the ordering, and with it the last digits of the results.
class MetisGuard {
public:
    MetisGuard();
    ~MetisGuard();
    MetisGuard(const MetisGuard&) = delete;
    MetisGuard& operator=(const MetisGuard&) = delete;

private:
    static constexpr int SIGNALS[] = {SIGABRT, SIGTERM};

    char numbers[128];
    char* hostsNumbers;
    struct sigaction hostsActions[2];
};

}  // namespace kmat
