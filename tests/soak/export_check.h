#pragma once

#include <cstdint>
#include <vector>

namespace soak {

/// Makes a small design of any bytes and exports it: its outline, the body and the files have to be
/// as their headers promise. Throws Fault.
void checkExports(const std::vector<std::uint8_t>& bytes);

}  // namespace soak
