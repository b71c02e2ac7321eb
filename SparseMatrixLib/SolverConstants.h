// Constants that more than one source of the optimiser uses. A single-precision literal is widened
// to double on purpose: the widened value is the constant.
#pragma once

/// Stiffness floor of void at the start and after each change of settings.
inline constexpr double EMIN_START = 0.01F;

/// Room for the first triplets of a filter.
inline constexpr int FILTER_CAPACITY = 200;
