// A host whose address space ends before the BLAS has its buffers gets a text, and once there is
// room it goes on. Left alone, OpenBLAS would ask for its buffer without end.
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>

#include "support/exports.h"

namespace {

void limitAddressSpace(rlim_t size) {
    rlimit limit;
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = std::min(size, limit.rlim_max);
    setrlimit(RLIMIT_AS, &limit);
}

rlim_t addressSpace() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

// Whether an iteration returns a compliance, or the text.
bool iterates(const std::string& expected) {
    test::update(test::cantilever(50, 50));
    char text[64] = "";
    const double compliance = _IterateVoxamApp(sizeof text, text, nullptr, nullptr, nullptr, 3);
    std::printf("%g, \"%s\"\n", compliance, text);
    return text == expected && (expected.empty() ? compliance > 0 : compliance == -1);
}

}  // namespace

int main() {
    constexpr rlim_t spare = 64 << 20;
    _InitVoxamApp(50, 50, 1, 1, 0.5F, 1, 0);
    limitAddressSpace(addressSpace() + spare);
    const bool failed = iterates("std::bad_alloc");
    limitAddressSpace(RLIM_INFINITY);
    return failed && iterates("") ? 0 : 1;
}
