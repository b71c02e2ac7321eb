// The Lagrange multiplier of the volume constraint, found by bisection.
#pragma once

#include <functional>

/// An interval that is to contain the multiplier, and by how much it widens first when it does not.
struct Bracket {
    double l1;
    double l2;
    double widening;
};

/// The bracket to start from. `iteration` counts from 1 since the last restart; the multipliers are
/// those of the last update and of the one before it.
Bracket initialBracket(int iteration, double lambda, double lambdaPrevious);

/// Bisects the bracket until its width relative to the sum of its ends is at most `tolerance`, and
/// returns the last midpoint. When one end never moved, the bracket widens on that side and the
/// search goes on, at most 20 times.
///
/// `excess` is the relative excess of volume of the design for a multiplier. Above 0 it never rises
/// as the multiplier grows, so most steps follow from earlier answers. `excess` is called for few
/// steps, for some multipliers in between, and for the result last. A bracket that is narrow enough
/// from the start widens like one that does not contain the multiplier. One that cannot widen gives
/// its middle, and `excess` is never called.
double findMultiplier(Bracket bracket, double tolerance,
                      const std::function<double(double multiplier)>& excess);
