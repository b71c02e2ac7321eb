#include "metis_guard.h"

#include <cstdlib>

namespace kmat {

MetisGuard::MetisGuard() : hostsNumbers(initstate(1, numbers, sizeof numbers)) {
    for (int i = 0; i < 2; ++i) sigaction(SIGNALS[i], nullptr, &hostsActions[i]);
}

MetisGuard::~MetisGuard() {
    for (int i = 0; i < 2; ++i) sigaction(SIGNALS[i], &hostsActions[i], nullptr);
    setstate(hostsNumbers);
}

}  // namespace kmat
