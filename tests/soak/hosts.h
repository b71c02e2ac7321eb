#pragma once

#include "checked_library.h"
#include "dice.h"

namespace soak {

/// A host as people use one: it edits a sound problem now and then and iterates in between, and
/// scores drawn designs. Beyond the contract it expects results that make sense.
void playPlausibleHost(CheckedLibrary& checked, Dice& dice);

/// A host that gets everything wrong that a host can get wrong, short of what voxam.h calls an
/// assertion and of arrays that are smaller than it says.
void playWildHost(CheckedLibrary& checked, Dice& dice);

}  // namespace soak
