#pragma once

#include <string>

/// Version of the library, as the banners print it.
inline const std::string libVersion = "1.1.2";
