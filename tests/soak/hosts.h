#pragma once

#include "dice.h"
#include "session.h"

namespace soak {

/// A host as people use one: it edits a sound problem now and then and iterates in between, and
/// scores drawn designs. Beyond the contract it expects results that make sense.
void playPlausibleHost(Session& session, Dice& dice);

/// A host that gets everything wrong that a host can get wrong, short of what voxam.h calls an
/// assertion and of arrays that are smaller than it says.
void playWildHost(Session& session, Dice& dice);

}  // namespace soak
