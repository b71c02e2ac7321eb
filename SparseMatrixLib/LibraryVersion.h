#pragma once

#include "voxam.h"

/// Version of the library, as the banners print it. Plain characters: a host may create a solver in
/// an exit handler, when objects with a destructor are gone.
inline constexpr char libVersion[] = VOXAM_VERSION;
