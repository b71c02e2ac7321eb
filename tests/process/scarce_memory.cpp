// A host whose address space is scarce gets a picture and a score, or a failure that it is told of,
// and once there is room it goes on. Left alone, OpenBLAS would ask for its buffer without end.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "support/answers.h"
#include "support/exports.h"

namespace {

constexpr rlim_t MIB = 1 << 20;
constexpr unsigned LONGEST_SECONDS = 300;  // for what hangs

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

// Whether there is a score.
bool scores() {
    const test::Records loads = test::tension(4, 3, 1);
    const test::Records supports = test::slidingLeftEdge(3);
    const std::vector<float> densities(12, 1.0F);
    _InitVoxamGame(4, 3, 1, 1, loads.count(), loads.data(), supports.count(), supports.data(), 1);
    return _SolveVoxamGame(densities.data(), nullptr) < test::FAILED_SCORE;
}

// The text of an iteration on a plate that needs more than a buffer. Wrong if text and compliance
// do not agree.
std::string iterate() {
    test::update(test::cantilever(150, 100));
    char text[64] = "";
    const double compliance = _IterateVoxamApp(sizeof text, text, nullptr, nullptr, nullptr, 3);
    return (compliance > 0) == (*text == '\0') ? text : "wrong";
}

// Whether a host with so much spare address space fares as it should. In a process of its own,
// since the buffer is taken once.
bool faresWell(rlim_t spare, bool& enough) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(LONGEST_SECONDS);
        _InitVoxamApp(150, 100, 1, 1, 0.5F, 1, 0);
        limitAddressSpace(addressSpace() + spare);
        const bool scored = scores();
        const std::string text = iterate();
        limitAddressSpace(RLIM_INFINITY);
        std::printf("%5d MiB: %s, \"%s\"\n", static_cast<int>(spare / MIB),
                    scored ? "a score" : "no score", text.c_str());
        if (text == "wrong" || !scores() || !iterate().empty()) _exit(1);
        _exit(scored && text.empty() ? 0 : 2);
    }
    int status = 0;
    waitpid(child, &status, 0);
    enough = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return enough || (WIFEXITED(status) && WEXITSTATUS(status) == 2);
}

}  // namespace

int main() {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    bool enough = false;
    // Where OpenBLAS has threads, each of them needs a buffer: gigabytes with many cores.
    constexpr rlim_t most = (sizeof(void*) == 4 ? 2048 : 65536) * MIB;
    for (rlim_t spare = 0; !enough && spare < most; spare += std::max(12 * MIB, spare / 16)) {
        if (!faresWell(spare, enough)) return 1;
    }
    return enough ? 0 : 1;
}
