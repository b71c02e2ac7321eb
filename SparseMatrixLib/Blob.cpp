#include "Blob.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <numeric>

#include "DataElem.h"

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

// A cell of several kinds is neither void nor solid, and stays.
void excludePassiveCells(const PassiveBlock& passive, DenseMatrix& interface) {
    if (passive.IsEmpty()) return;
    for (unsigned i = 0; i < interface.getRows(); ++i) {
        const int kind = passive.getCoarseGridElement(static_cast<int>(i));
        if (kind == PassiveBlock::VOID || PassiveBlock::isSolid(kind)) interface(i, 0) = 0.0;
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

double sum(const DenseMatrix& v) { return std::accumulate(v.begin(), v.end(), 0.0); }

double evenPart(double count) { return 2.0 * std::floor(count * 0.5); }

}  // namespace

Blob::Blob(unsigned nelx, unsigned nely, double radius)
    : nelx(nelx),
      nely(nely),
      blobMask(kmat::undefinedVector(nelx * nely)),
      blobSensitivity(kmat::undefinedVector(nelx * nely)),
      circleMask(kmat::undefinedVector(nelx * nely)),
      blobInterface(kmat::undefinedVector(nelx * nely)),
      circleInterface(kmat::undefinedVector(nelx * nely)),
      blobMaskFiltered(kmat::undefinedVector(nelx * nely)),
      circleMaskFiltered(kmat::undefinedVector(nelx * nely)),
      Hcoarse(nelx, nely, radius),
      blobSensitivityFiltered(kmat::undefinedVector(nelx * nely)),
      maskShare(kmat::undefinedVector(nelx * nely)) {
    Hcoarse.applyMaximumRule(nelx * nely);
    setFilterMatBlob();
    blobMask.fill(0.0);
}

void Blob::setFilterMatBlob() { blobH = ConeFilter(nelx, nely, rminBlob); }

void Blob::restart(const short* blobData, const PassiveBlock& passive) {
    blobMask.fill(0.0);
    const int count = blobData ? std::max<int>(blobData[0], 0) : 0;
    for (int k = 1; k <= count; ++k) {
        // A negative coordinate lies far outside as an unsigned one.
        const auto x = static_cast<unsigned>(blobData[2 * k - 1]);
        const auto y = static_cast<unsigned>(blobData[2 * k]);
        if (x < nelx && y < nely) blobMask(nely * x + y, 0) = 1.0;
    }
    hasBlob = count > 0 ? 1 : 0;
    blobCellCount = count;

    constexpr double noObjectiveYet = 1e10;
    blobConverged = 0;
    blobConvergedPrevious = 0;
    blobCounter = 0;
    objectivePrevious = noObjectiveYet;
    objectivePrevious2 = noObjectiveYet;
    blobStage = 0;
    blobPreparedCount = 0.0;
    blobMoveCount = 0.0;
    blobIteration = 1;

    findBlobInterface(Shape::BLOB, passive);
    equivalentCircleMoI();
    interfaceSizeOfEquivalentCircle(passive);

    // The limit counts elements that leave and elements that join: about a tenth of the interface
    // of a disc of the blob's area leaves it in a step.
    blobMoveLimitLarge = 0.0;
    blobMoveLimit = 2.0 * std::round(circleInterfaceSize * 0.2 * 0.5);
    blobMoveLimitMax = blobMoveLimit;
    blobMoveLimitFraction = blobMoveLimit;
}

void Blob::filterBlobSensitivities() {
    // Not 0 in the blob, where the division below would bring back no number.
    constexpr double leastWeight = 0.001;
    const auto weight = [&](unsigned i) { return std::max(leastWeight, 1.0 - blobMask(i, 0)); };
    for (unsigned i = 0; i < blobMask.getRows(); ++i) blobSensitivity(i, 0) *= weight(i);
    Hcoarse.apply(blobSensitivity, blobSensitivityFiltered);
    for (unsigned i = 0; i < blobMask.getRows(); ++i) {
        blobSensitivity(i, 0) = blobSensitivityFiltered(i, 0) / weight(i);
    }
}

void Blob::filterBlobDensities(Shape shape) {
    if (shape == Shape::BLOB)
        blobH.applyTransposed(blobMask, maskShare, blobMaskFiltered);
    else
        blobH.applyTransposed(circleMask, maskShare, circleMaskFiltered);
}

void Blob::findBlobInterface(Shape shape, const PassiveBlock& passive) {
    filterBlobDensities(shape);
    if (shape == Shape::BLOB) {
        markInterface(blobMaskFiltered, blobInterface);
        excludePassiveCells(passive, blobInterface);
        blobInterfaceSize = sum(blobInterface);
    } else {
        markInterface(circleMaskFiltered, circleInterface);
    }
}

// From no more than what left and joined last time: 3 % more while the compliance goes steadily one
// way, 5 % less when it turns. Small limits are tracked unrounded, or they could never grow.
void Blob::updateBlobMoveLimit(double objective) {
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

void Blob::prepareInterfaceRedistribution() {
    std::vector<DataElem> inside;
    std::vector<DataElem> outside;
    for (unsigned i = 0; i < blobInterface.getRows(); ++i) {
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

void Blob::updateBlob() {
    blobConverged = blobMoveCount == 0.0 ? 1 : 0;
    if (blobConverged) return;
    for (unsigned i : blobLeaving) blobMask(i, 0) = 0.0;
    for (unsigned i : blobJoining) blobMask(i, 0) = 1.0;
}

void Blob::redistributeBlob() {
    prepareInterfaceRedistribution();
    updateBlob();
}

void Blob::equivalentCircleMoI() {
    circleMoI = blobCellCount * blobCellCount / std::numbers::pi * 0.5;
    circleRadiusSquared = blobCellCount / std::numbers::pi;
}

void Blob::interfaceSizeOfEquivalentCircle(const PassiveBlock& passive) {
    circleMask.fill(0.0);
    for (unsigned ix = 0; ix < nelx; ++ix) {
        for (unsigned iy = 0; iy < nely; ++iy) {
            const double x = ix - nelx * 0.5 + 0.5;
            const double y = iy - nely * 0.5 + 0.5;
            if (x * x + y * y < circleRadiusSquared) circleMask(nely * ix + iy, 0) = 1.0;
        }
    }
    findBlobInterface(Shape::CIRCLE, passive);
    circleInterfaceSize = sum(circleInterface);
}

void Blob::createAndPublishBlobResult(int* out) const {
    if (!out) return;
    for (unsigned ix = 0; ix < nelx; ++ix) {
        for (unsigned iy = 0; iy < nely; ++iy) {
            out[nelx * iy + ix] = blobMask(nely * ix + iy, 0) >= 1.0 ? 1 : 0;
        }
    }
}
