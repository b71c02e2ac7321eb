// Constants that more than one source of the optimiser uses. A single-precision literal is widened
// to double on purpose: the widened value is the constant.
#pragma once

#include <cstddef>

/// Stiffness floor of void at the start and after each change of settings.
inline constexpr double EMIN_START = 0.01F;

/// Elements that are computed side by side, each in its own lane of the processor's vectors: the
/// sum of each is formed in its own order and has the bits of a scalar loop.
inline constexpr size_t LANES = 8;

constexpr size_t paddedToLanes(size_t count) { return (count + LANES - 1) / LANES * LANES; }
