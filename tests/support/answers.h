// What a host may get to hear, word for word.
#pragma once

#include <string>

namespace test {

inline const std::string NO_OPTIMISER = "No optimiser: call _InitVoxamApp first";
inline const std::string UNSOLVABLE = "Change load / support";
inline const std::string NOT_HELD = "Change load/support";
inline const std::string NO_WORK = "Load cannot be on top of support";

/// The score of a plate that cannot be solved.
inline constexpr double FAILED_SCORE = 3.4028234663852886e38;

}  // namespace test
