#pragma once

#include <filesystem>

namespace voxam::inline checks {

/// Bytes that this process can still allocate: the least of the free memory of the machine, of the
/// rest of its address space (ulimit -v), and of the rest of its cgroups (containers). Infinite if
/// the system does not report it. The arguments are the folders in which Linux reports it.
double availableMemory(const std::filesystem::path& proc = "/proc",
                       const std::filesystem::path& cgroups = "/sys/fs/cgroup");

}  // namespace voxam::inline checks
