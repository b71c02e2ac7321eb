#include "checks/available_memory.h"

#include <sys/resource.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <limits>
#include <string>

namespace voxam::inline checks {

namespace {

namespace fs = std::filesystem;

constexpr double UNLIMITED = std::numeric_limits<double>::infinity();
constexpr double KILOBYTE = 1024;

// Addresses for the stacks and heaps of the library's threads, and for the BLAS's buffers.
constexpr double BYTES_OF_THREADS = 135e6;

/// Files of one version of cgroups.
struct CgroupFiles {
    const char* limit;
    const char* usage;
    const char* cache;  ///< key in memory.stat: files' contents, dropped before memory is refused
};

/// The number after the key, in the first line that begins with it.
double numberIn(const fs::path& file, const std::string& key, double otherwise) {
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(key)) continue;
        const auto begin = line.find_first_not_of(" \t", key.size());
        double number = 0;
        // No number is "max", which is no limit.
        if (begin == std::string::npos ||
            std::from_chars(&line[begin], line.data() + line.size(), number).ec != std::errc())
            return otherwise;
        return number;
    }
    return otherwise;
}

double leftOfAddresses(const fs::path& proc) {
    rlimit limit = {};
    if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return UNLIMITED;
    const double taken = KILOBYTE * numberIn(proc / "self" / "status", "VmSize:", 0);
    return static_cast<double>(limit.rlim_cur) - taken - BYTES_OF_THREADS;
}

double leftIn(const fs::path& folder, const CgroupFiles& files) {
    const double limit = numberIn(folder / files.limit, "", UNLIMITED);
    const double taken = numberIn(folder / files.usage, "", 0);
    return limit - std::max(0.0, taken - numberIn(folder / "memory.stat", files.cache, 0));
}

/// Of the cgroup with this path and those around it. A container may see its own group as the root,
/// though the path names the host's.
double leftInAndAbove(const fs::path& root, const fs::path& path, const CgroupFiles& files) {
    double left = leftIn(root, files);
    fs::path folder = root;
    for (const fs::path& name : path.relative_path()) {
        folder /= name;
        left = std::min(left, leftIn(folder, files));
    }
    return left;
}

double leftOfCgroups(const fs::path& proc, const fs::path& cgroups) {
    double left = UNLIMITED;
    std::ifstream lines(proc / "self" / "cgroup");
    // Such as "0::/user.slice", or "4:memory:/user.slice" in the first version.
    for (std::string line; std::getline(lines, line);) {
        const auto first = line.find(':');
        const auto second = line.find(':', first + 1);
        if (first == std::string::npos || second == std::string::npos) continue;
        const std::string controllers = "," + line.substr(first + 1, second - first - 1) + ",";
        const fs::path path = line.substr(second + 1);
        if (line.starts_with("0:"))
            left = std::min(
                left,
                leftInAndAbove(cgroups, path, {"memory.max", "memory.current", "inactive_file "}));
        else if (controllers.find(",memory,") != std::string::npos)
            left = std::min(left, leftInAndAbove(cgroups / "memory", path,
                                                 {"memory.limit_in_bytes", "memory.usage_in_bytes",
                                                  "total_inactive_file "}));
    }
    return left;
}

}  // namespace

double availableMemory(const fs::path& proc, const fs::path& cgroups) {
    const double machine = KILOBYTE * numberIn(proc / "meminfo", "MemAvailable:", UNLIMITED);
    return std::max(0.0, std::min({machine, leftOfAddresses(proc), leftOfCgroups(proc, cgroups)}));
}

}  // namespace voxam::inline checks
