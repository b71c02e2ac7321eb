#include "Multiplier.h"

#include <algorithm>
#include <cmath>

namespace {

// The multiplier is found among 0 .. 10000 while nothing is known of it.
constexpr Bracket WIDEST_BRACKET = {0.0, 10000.0, 5000.0};

constexpr int MOST_WIDENINGS = 20;

}  // namespace

Bracket initialBracket(int iteration, double lambda, double lambdaPrevious) {
    if (iteration < 2) return WIDEST_BRACKET;
    if (iteration == 2) {
        // A multiplier that is not positive comes from a failed iteration or an inactive
        // constraint: a bracket made of it would be empty.
        return lambda > 0.0 ? Bracket{0.0, 2.0 * lambda, lambda} : WIDEST_BRACKET;
    }
    const double least = lambda > 1.0 ? 0.005 * lambda : 0.005;
    const double widening = std::max(least, std::fabs(lambda - lambdaPrevious));
    return {lambda - widening, lambda + widening, widening};
}

double findMultiplier(Bracket bracket, double tolerance,
                      const std::function<double(double)>& excess) {
    double& l1 = bracket.l1;
    double& l2 = bracket.l2;
    double lmid = (l1 + l2) * 0.5;
    for (int widenings = 0;; ++widenings) {
        bool l1Moved = false;
        bool l2Moved = false;
        // With both ends at 0 the width is not a number, and the loop must end.
        while (bracket.relativeWidth() > tolerance) {
            lmid = (l1 + l2) / 2.0;
            const bool exhausted = lmid == l1 || lmid == l2;
            if (excess(lmid) > 0.0) {
                l1 = lmid;
                l1Moved = true;
            } else {
                l2 = lmid;
                l2Moved = true;
            }
            if (exhausted) break;  // floating point can halve no further
        }
        if (widenings == MOST_WIDENINGS || (l1Moved && l2Moved)) return lmid;
        if (!l1Moved)
            l1 = std::max(0.0, l1 - 2.0 * bracket.widening);
        else
            l2 += 2.0 * bracket.widening;
        bracket.widening *= 2.0;
    }
}
