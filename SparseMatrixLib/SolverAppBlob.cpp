// The blob: a region of the coarse grid that stays empty and keeps its size, while each step moves
// some elements of its boundary from where material is useful to where it is least so.

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

#include "DataElem.h"
#include "SolverApp.h"

using kmat::DenseMatrix;

namespace {

// A smoothed mask outside these bounds means well inside or well outside.
constexpr double OUTSIDE = 0.0001;
constexpr double INSIDE = 0.9999;

void markInterface(const DenseMatrix& smoothedMask, DenseMatrix& interface) {
    interface.fill(1.0);
    for (unsigned i = 0; i < smoothedMask.getRows(); ++i) {
        if (smoothedMask(i, 0) < OUTSIDE || smoothedMask(i, 0) > INSIDE) interface(i, 0) = 0.0;
    }
}

// Values that are not numbers go last, as an ordering with them would be none.
template <typename Before>
void sortByValue(std::vector<DataElem>& candidates, Before before) {
    std::sort(candidates.begin(), candidates.end(), [before](const DataElem& a, const DataElem& b) {
        if (std::isnan(a.value) || std::isnan(b.value)) {
            return !std::isnan(a.value) && std::isnan(b.value);
        }
        return before(a.value, b.value);
    });
}

// The first candidate is always taken, then as many as make up `count`.
void takeFirst(const std::vector<DataElem>& candidates, double count,
               std::vector<unsigned>& taken) {
    taken.clear();
    for (const DataElem& candidate : candidates) {
        if (!taken.empty() && static_cast<double>(taken.size()) >= count) break;
        taken.push_back(candidate.index);
    }
}

double evenPart(double count) { return 2.0 * std::floor(count * 0.5); }

}  // namespace

double SolverApp::runIterationWithBlob(int messageLength, char* messageBuffer, float* output,
                                       double& change, RuntimeStat* stat, int* blobOut) {
    const double result = runIteration(messageLength, messageBuffer, output, change, stat);
    if (blobStage >= 2) updateBlobMoveLimit();
    redistributeBlob();
    findBlobInterface(0);
    blobConvergedPrevious = blobConverged;
    blobIteration = 1;
    ++blobStage;
    createAndPublishBlobResult(blobOut);
    return result;
}

void SolverApp::findBlobInterface(int mode) {
    if (mode == 0) {
        filterBlobDensities(0);
        markInterface(blobMaskFiltered, blobInterface);
        excludePassiveCellsFromInterface();
        blobInterfaceSize = sum(blobInterface);
    } else if (mode == 1) {
        filterBlobDensities(2);
        markInterface(circleMaskFiltered, circleInterface);
    }
}

void SolverApp::excludePassiveCellsFromInterface() {
    if (passiveBlock.IsEmpty()) return;
    for (unsigned i = 0; i < numberOfCoarseElements; ++i) {
        const int kind = passiveBlock.getCoarseGridElement(static_cast<int>(i));
        if (kind == PassiveBlock::VOID || kind == PassiveBlock::SOLID ||
            kind == PassiveBlock::SECOND_SOLID) {
            blobInterface(i, 0) = 0.0;
        }
    }
}

// At most twice what moved last time; 3 % more while the compliance goes steadily one way, 5 % less
// when it turns. Small limits are tracked unrounded, or they could never grow.
void SolverApp::updateBlobMoveLimit() {
    const double moved = 2.0 * blobMoveCount;
    const bool oscillating =
        (objectivePrevious - objectivePrevious2) * (objective - objectivePrevious) < 0.0;
    if (blobMoveLimit < 10.0) {
        const double f = std::min(blobMoveLimitFraction, moved);
        blobMoveLimitFraction = oscillating ? f * 0.95 : std::min(blobMoveLimitMax, f * 1.03);
        blobMoveLimit = 2.0 * std::round(blobMoveLimitFraction * 0.5);
    } else {
        constexpr double growth = 1.03F;
        const double t = std::min(blobMoveLimit, moved);
        blobMoveLimitLarge = t;
        blobMoveLimit = evenPart(oscillating ? std::floor(0.95 * t)
                                             : std::ceil(std::min(blobMoveLimitMax, growth * t)));
        if (blobMoveLimit == t) {
            if (t > 0.0) blobMoveLimit += 2.0;
            if (blobMoveLimit > blobMoveLimitMax) blobMoveLimit = blobMoveLimitMax;
        }
    }
    objectivePrevious2 = objectivePrevious;
    objectivePrevious = objective;
}

void SolverApp::prepareInterfaceRedistribution() {
    std::vector<DataElem> inside;
    std::vector<DataElem> outside;
    for (unsigned i = 0; i < numberOfCoarseElements; ++i) {
        if (blobInterface(i, 0) != 1.0) continue;
        const double flags = blobInterface(i, 0) + blobMask(i, 0);
        if (flags == 2.0)
            inside.push_back({blobSensitivity(i, 0), i});
        else if (flags == 1.0)
            outside.push_back({blobSensitivity(i, 0), i});
    }
    sortByValue(inside, std::greater<>());
    sortByValue(outside, std::less<>());

    blobMoveCount = std::floor(std::min(blobMoveLimit, static_cast<double>(inside.size())) * 0.5);
    blobPreparedCount = blobMoveCount;
    takeFirst(inside, blobMoveCount, blobLeaving);
    takeFirst(outside, blobMoveCount, blobJoining);
}

void SolverApp::updateBlob() {
    blobConverged = blobMoveCount == 0.0 ? 1 : 0;
    if (blobConverged) return;
    for (unsigned i : blobLeaving) blobMask(i, 0) = 0.0;
    for (unsigned i : blobJoining) blobMask(i, 0) = 1.0;
}

void SolverApp::redistributeBlob() {
    prepareInterfaceRedistribution();
    updateBlob();
}

void SolverApp::equivalentCircleMoI() {
    circleMoI = blobCellCount * blobCellCount / std::numbers::pi * 0.5;
    circleRadiusSquared = blobCellCount / std::numbers::pi;
}

void SolverApp::interfaceSizeOfEquivalentCircle() {
    circleMask.fill(0.0);
    for (unsigned ix = 0; ix < nelx; ++ix) {
        for (unsigned iy = 0; iy < nely; ++iy) {
            const double x = ix - nelx * 0.5 + 0.5;
            const double y = iy - nely * 0.5 + 0.5;
            if (x * x + y * y < circleRadiusSquared) circleMask(nely * ix + iy, 0) = 1.0;
        }
    }
    findBlobInterface(1);
    circleInterfaceSize = sum(circleInterface);
}

void SolverApp::createAndPublishBlobResult(int* out) const {
    if (!out) return;
    for (unsigned ix = 0; ix < nelx; ++ix) {
        for (unsigned iy = 0; iy < nely; ++iy) {
            out[nelx * iy + ix] = blobMask(nely * ix + iy, 0) >= 1.0 ? 1 : 0;
        }
    }
}

double SolverApp::clamp(double x, double lo, double hi) {
    if (lo > x) return lo;
    return hi < x ? hi : x;
}

double SolverApp::clamp(double x, double lo1, double lo2, double hi1, double hi2) {
    return clamp(clamp(x, lo1, hi1), lo2, hi2);
}
