// Optimality criteria with a move limit, and the continuation of the stiffness floor.

#include <algorithm>
#include <cmath>

#include "SolverApp.h"
#include "SolverConstants.h"
#include "assertion.h"

using kmat::DenseMatrix;

namespace {

constexpr double MOVE_LIMIT = 0.2F;

// The multiplier is found among 0 .. 10000 while nothing is known of it.
constexpr double WIDEST_MULTIPLIER = 10000.0;

// Passive cells leave fewer free ones to take up an error of the volume.
constexpr double TOLERANCE_WITH_PASSIVE_CELLS = 1e-9;
constexpr double TOLERANCE = 0.001F;

constexpr int MOST_WIDENINGS = 20;

constexpr int EMIN_PERIOD = 7;

// An interval that contains the multiplier, and by how much it widens when it does not.
struct Bracket {
    double l1;
    double l2;
    double widening;

    double relativeWidth() const { return (l2 - l1) / (l2 + l1); }
};

constexpr Bracket WIDEST_BRACKET = {0.0, WIDEST_MULTIPLIER, WIDEST_MULTIPLIER / 2.0};

Bracket initialBracket(int iteration, double lambda, double lambdaPrevious) {
    // A multiplier that is not positive comes from a failed iteration or an inactive constraint.
    if (iteration < 2 || (iteration == 2 && !(lambda > 0.0))) return WIDEST_BRACKET;
    if (iteration == 2) return {0.0, 2.0 * lambda, lambda};
    const double least = lambda > 1.0 ? 0.005 * lambda : 0.005;
    const double widening = std::max(least, std::fabs(lambda - lambdaPrevious));
    return {lambda - widening, lambda + widening, widening};
}

}  // namespace

void SolverApp::optimalityCriteriaUpdateOfRHO() {
    const double tolerance = passiveBlock.IsEmpty() ? TOLERANCE : TOLERANCE_WITH_PASSIVE_CELLS;
    Bracket bracket = initialBracket(iteration, lambda, lambdaPrevious);
    // In a bracket about such a multiplier no step might be made, and nothing written to rhoNew.
    if (!(bracket.relativeWidth() > tolerance)) bracket = WIDEST_BRACKET;

    collectPassiveCells();
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
            if (linearisedVolume(lmid) > 0.0) {
                l1 = lmid;
                l1Moved = true;
            } else {
                l2 = lmid;
                l2Moved = true;
            }
            if (exhausted) break;  // floating point can halve no further
        }
        if (widenings == MOST_WIDENINGS) break;
        if (!l1Moved)
            l1 = std::max(0.0, l1 - 2.0 * bracket.widening);
        else if (!l2Moved)
            l2 += 2.0 * bracket.widening;
        else
            break;
        bracket.widening *= 2.0;
    }

    lambdaPrevious = lambda;
    lambda = lmid;
    rho.swap(rhoNew);
}

// Writes the design for one multiplier to rhoNew and returns its relative excess of volume,
// linearised about the present design.
double SolverApp::linearisedVolume(double multiplier) {
    designFor(multiplier);
    if (!passiveBlock.IsEmpty()) return volumeWithPassiveCells() + constraint;
    double volume = 0.0;
    for (unsigned e = 0; e < numberOfElements; ++e) {
        volume += (rhoNew(e, 0) - rho(e, 0)) * dv(e, 0);
    }
    return volume + constraint;
}

// The order of every min and max decides what becomes of a NaN: a cell that was passive
// void (density 0, hence no sensitivity) and is set free restarts at the move limit.
void SolverApp::designFor(double multiplier) {
    const double* const x = rho.begin();
    const double* const compliance = dc.begin();
    const double* const volume = dv.begin();
    double* const xnew = rhoNew.begin();
    const double least = Emin;
    for (unsigned e = 0; e < numberOfElements; ++e) {
        const double optimal = x[e] * std::sqrt(-compliance[e] / multiplier / volume[e]);
        xnew[e] = std::max(x[e] - MOVE_LIMIT,
                           std::min(x[e] + MOVE_LIMIT, std::max(least, std::min(1.0, optimal))));
    }
}

// Puts the passive cells of rhoNew right, masks the physical densities and sums the volume.
double SolverApp::volumeWithPassiveCells() {
    double volume = 0.0;
    for (unsigned e = 0; e < numberOfElements; ++e) {
        const int kind = passiveKinds[e];
        if (kind == PassiveBlock::VOID) rhoNew(e, 0) = 0.0;
        if (kind == PassiveBlock::SOLID || kind == PassiveBlock::SECOND_SOLID) rhoNew(e, 0) = 1.0;
        rhoPhys(e, 0) = fineBlobMask[e] > 0.0 ? 0.0 : rhoNew(e, 0);
        volume += (1.0 - fineBlobMask[e]) * (rhoPhys(e, 0) - rho(e, 0)) * dv(e, 0);
    }
    return volume;
}

// Looks up once what every step of the bisection asks of every cell.
void SolverApp::collectPassiveCells() {
    if (passiveBlock.IsEmpty()) return;
    for (unsigned e = 0; e < numberOfElements; ++e) {
        passiveKinds[e] = static_cast<int8_t>(passiveBlock.getFineGridElement(static_cast<int>(e)));
        fineBlobMask[e] = blobMaskOfFineCell(e);
    }
}

void SolverApp::adjustEminBasedOnMovementChanges() {
    if (movementChanged) {
        Emin = EMIN_START;
        movementChanged = false;
        loop = 1;
    } else if (iteration % EMIN_PERIOD == 0) {
        Emin = std::max(EminLowerLimit, EminFactor * Emin);
    }
}

double SolverApp::maxDelta(const DenseMatrix& a, const DenseMatrix& b) {
    const size_t size = size_t{a.getRows()} * a.getColumns();
    // Hosts look this report up by its line.
    VOXAM_ASSERT_AT("SparseMatrixLib/SolverApp.cpp", 843, size == b.getRows() * b.getColumns());
    double largest = 0.0;
    for (size_t i = 0; i < size; ++i) {
        largest = std::max(largest, std::fabs(a.begin()[i] - b.begin()[i]));
    }
    return largest;
}
