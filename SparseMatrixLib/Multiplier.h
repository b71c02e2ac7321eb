// The Lagrange multiplier of the volume constraint, found by bisection.
#pragma once

#include <functional>

/// An interval in which the multiplier is searched, and its first widening if it is not there.
struct Bracket {
    double l1;
    double l2;
    double widening;
};

/// The first bracket of an update. `iteration` counts from 1 since the last restart. `lambda` is
/// the multiplier of the last update, and `lambdaPrevious` of the update before.
Bracket initialBracket(int iteration, double lambda, double lambdaPrevious);

/// Bisects the bracket until its width relative to the sum of its ends is at most `tolerance`, and
/// returns the last midpoint. When one end never moved, the bracket widens on that side and the
/// search continues, at most 20 times.
///
/// `excess` is the relative excess of volume of the design for a multiplier. Above 0 it never rises
/// as the multiplier grows, so earlier values decide most steps. `excess` is called for few steps,
/// for some multipliers in between, and at the end for the result. A bracket that is narrow enough
/// from the start widens as if the multiplier were outside. If it cannot widen, the result is its
/// middle, and `excess` is never called.
double findMultiplier(Bracket bracket, double tolerance,
                      const std::function<double(double multiplier)>& excess);
