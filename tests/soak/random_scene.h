#pragma once

#include <string>

#include "dice.h"

namespace soak {

/// The text of a scene: half of them good, the others with a value, a key or a byte that is not.
std::string randomScene(Dice& dice);

}  // namespace soak
