#include "Multiplier.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// The multiplier is found among 0 .. 10000 while nothing is known of it.
constexpr Bracket WIDEST_BRACKET = {0.0, 10000.0, 5000.0};

constexpr int MOST_WIDENINGS = 20;

// Interpolation pays where it saves at least six bisections, and a curve that is too crooked for it
// is bisected in the end.
constexpr double WIDE = 64.0;
constexpr int MOST_INTERPOLATIONS = 20;

double relativeWidth(double l1, double l2) { return (l2 - l1) / (l2 + l1); }

// Decides whether a candidate is below the multiplier. The excess never rises with a candidate
// above 0, so two known candidates decide all others except those between them. Interpolation moves
// these two close to each other. The fine bisection, whose steps every result depends on, then
// needs few designs.
class Sides {
public:
    Sides(const std::function<double(double)>& excessOf, double tolerance)
        : excessOf(excessOf), tolerance(tolerance) {}

    // Asks for the ends of a bracket first, where that may save steps.
    void lookAt(const Bracket& bracket) {
        if (!isWide(bracket.l1, bracket.l2)) return;
        for (const double end : {bracket.l1, bracket.l2}) {
            if (isOpen(end)) ask(end);
        }
    }

    // Whether the excess is above 0.
    bool isBelow(double multiplier) {
        if (!(multiplier > 0.0)) return ask(multiplier) > 0.0;
        while (isOpen(multiplier) && canInterpolate()) interpolate();
        if (isOpen(multiplier)) return ask(multiplier) > 0.0;
        return multiplier <= below.multiplier;
    }

    // Asks for this multiplier again if others were asked for since.
    void askLast(double multiplier) {
        if (hasAsked && lastAsked != multiplier) ask(multiplier);
    }

private:
    struct Known {
        double multiplier;
        double excess;
    };

    bool isOpen(double multiplier) const {
        return multiplier > below.multiplier && multiplier < above.multiplier;
    }

    bool isWide(double l1, double l2) const { return relativeWidth(l1, l2) > WIDE * tolerance; }

    bool canInterpolate() const {
        return interpolations < MOST_INTERPOLATIONS && below.multiplier > 0.0 &&
               isWide(below.multiplier, above.multiplier);
    }

    // By the Illinois rule: an end that stays counts half the next time, so that both ends come
    // close.
    void interpolate() {
        ++interpolations;
        const double share = below.excess / (below.excess - above.excess);
        const double multiplier = below.multiplier + share * (above.multiplier - below.multiplier);
        if (!isOpen(multiplier)) {
            interpolations = MOST_INTERPOLATIONS;
            return;
        }
        const bool wasBelow = lastIsBelow;
        ask(multiplier);
        if (lastIsBelow == wasBelow) (lastIsBelow ? above : below).excess /= 2.0;
    }

    double ask(double multiplier) {
        const double excess = excessOf(multiplier);
        hasAsked = true;
        lastAsked = multiplier;
        lastIsBelow = excess > 0.0;
        if (isOpen(multiplier)) {
            if (excess > 0.0) below = {multiplier, excess};
            if (excess <= 0.0) above = {multiplier, excess};
        }
        return excess;
    }

    const std::function<double(double)>& excessOf;
    double tolerance;
    Known below = {0.0, 0.0};  // the ends of the undecided interval
    Known above = {std::numeric_limits<double>::infinity(), 0.0};
    bool hasAsked = false;
    double lastAsked = 0.0;
    bool lastIsBelow = false;
    int interpolations = 0;
};

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
    Sides sides(excess, tolerance);
    for (int widenings = 0;; ++widenings) {
        bool l1Moved = false;
        bool l2Moved = false;
        sides.lookAt(bracket);
        // With both ends at 0 the width is not a number, and the loop must end.
        while (relativeWidth(l1, l2) > tolerance) {
            lmid = (l1 + l2) / 2.0;
            const bool exhausted = lmid == l1 || lmid == l2;
            if (sides.isBelow(lmid)) {
                l1 = lmid;
                l1Moved = true;
            } else {
                l2 = lmid;
                l2Moved = true;
            }
            if (exhausted) break;  // floating point can halve no further
        }
        if (widenings == MOST_WIDENINGS || (l1Moved && l2Moved)) break;
        if (!l1Moved)
            l1 = std::max(0.0, l1 - 2.0 * bracket.widening);
        else
            l2 += 2.0 * bracket.widening;
        bracket.widening *= 2.0;
    }
    sides.askLast(lmid);
    return lmid;
}
