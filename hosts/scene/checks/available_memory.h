#pragma once

#include <filesystem>

namespace voxam::inline checks {

/// Bytes that this process can still get: the least of what the machine has free, what the limit of
/// its addresses (ulimit -v) leaves, and what its cgroups (containers) leave. Infinite on systems
/// that do not say. The folders are those in which Linux says it.
double availableMemory(const std::filesystem::path& proc = "/proc",
                       const std::filesystem::path& cgroups = "/sys/fs/cgroup");

}  // namespace voxam::inline checks
