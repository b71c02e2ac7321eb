#pragma once

#include "voxam.h"

/// What the banners print. Plain characters: a host may create a solver in
/// an exit handler, when objects with a destructor are gone.
inline constexpr char libVersion[] = VOXAM_BANNER_VERSION;
