#include "checks/available_memory.h"

namespace {

constexpr double MAXIMUM = 2147483648.0;  // as CMakeLists.txt links it
constexpr double PAGE = 65536.0;

}  // namespace

double voxam::checks::availableMemory(const std::filesystem::path& /*proc*/,
                                      const std::filesystem::path& /*cgroups*/) {
    return MAXIMUM - PAGE * static_cast<double>(__builtin_wasm_memory_size(0));
}
