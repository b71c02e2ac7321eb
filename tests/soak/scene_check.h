#pragma once

#include <string>

namespace soak {

/// Reads the text of a scene. It has to be refused by an InputError that names the file, or to give
/// a scene within the limits, which can be written and read back, and which the library takes.
/// Throws Fault.
void checkScene(const std::string& text);

}  // namespace soak
