// Cone filters: the weight of two cells is the filter radius less their distance, at least 0.

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include "SolverApp.h"
#include "SolverConstants.h"

using kmat::DenseMatrix;
using kmat::SparseMatrix;

namespace {

// A filter as it is kept, and without its explicit zeros, which a product need not visit.
struct Filter {
    SparseMatrix weights;
    SparseMatrix nonZero;
};

SparseMatrix noWeights() {
    SparseMatrix weights(0, 0, true, 0);
    weights.build();
    return weights;
}

Filter emptyFilter() { return {noWeights(), noWeights()}; }

// Weights of a grid of nx x ny cells, upper triangle. Each cell is paired with the cells of its own
// and the following columns, in rows from `before` rows back up to but excluding `after` rows
// ahead, and as many columns ahead. Weights of 0 in this neighbourhood are stored.
//
// Written column by column, that is by the second cell of each pair.
Filter coneFilter(unsigned nx, unsigned ny, double radius, int before, int after) {
    const auto columns = static_cast<int>(nx);
    const auto rows = static_cast<int>(ny);
    const unsigned cells = nx * ny;
    const auto neighbours = size_t{1} * std::min(after, columns) * std::min(before + after, rows);
    kmat::SparseColumnWriter all(cells, cells, kmat::SYMMETRIC_UPPER, cells * neighbours);
    kmat::SparseColumnWriter nonZero(cells, cells, kmat::SYMMETRIC_UPPER, cells * neighbours);
    for (int i2 = 0; i2 < columns; ++i2) {
        for (int j2 = 0; j2 < rows; ++j2) {
            for (int i1 = std::max(i2 - after + 1, 0); i1 <= i2; ++i1) {
                // Within the own column the upper triangle ends at the cell itself.
                const int lastRow = i1 == i2 ? j2 : std::min(j2 + before, rows - 1);
                for (int j1 = std::max(j2 - after + 1, 0); j1 <= lastRow; ++j1) {
                    const int squared = (i1 - i2) * (i1 - i2) + (j1 - j2) * (j1 - j2);
                    const double weight = std::max(0.0, radius - std::sqrt(squared));
                    all.add(i1 * rows + j1, weight);
                    if (weight > 0.0) nonZero.add(i1 * rows + j1, weight);
                }
            }
            all.endColumn();
            nonZero.endColumn();
        }
    }
    return {all.finish(), nonZero.finish()};
}

// Deliberately lopsided: from R + 1 cells back to R - 1 cells ahead.
Filter lopsidedConeFilter(unsigned nx, unsigned ny, double radius) {
    if (nx == 0 || ny == 0) return emptyFilter();
    const int R = static_cast<int>(std::ceil(radius));
    return coneFilter(nx, ny, radius, R + 1, R);
}

Filter symmetricConeFilter(unsigned nx, unsigned ny, double radius) {
    if (nx == 0 || ny == 0) return emptyFilter();
    const int R = static_cast<int>(std::floor(radius));
    return coneFilter(nx, ny, radius, R, R + 1);
}

DenseMatrix rowSums(const SparseMatrix& weights) {
    DenseMatrix sums = weights * DenseMatrix(weights.getRows(), 1, 1.0);
    if (sums.getRows() != weights.getRows()) throw std::bad_alloc();
    return sums;
}

// The first `count` cells share the largest of their row sums, so that with one fine cell per
// coarse element the cells near the border receive less than full weight. Deliberate.
void applyMaximumRule(DenseMatrix& normaliser, unsigned count) {
    double* const end = normaliser.begin() + std::min(count, normaliser.getRows());
    double largest = 1e-8;
    for (const double* value = normaliser.begin(); value != end; ++value) {
        largest = std::max(largest, *value);
    }
    std::fill(normaliser.begin(), end, largest);
}

}  // namespace

void SolverApp::setFilterMat() {
    Filter fine = lopsidedConeFilter(nelx * subdivision, nely * subdivision, rmin);
    H = std::move(fine.weights);
    HNonZero = std::move(fine.nonZero);
    Hs = rowSums(HNonZero);
    applyMaximumRule(Hs, numberOfCoarseElements);

    // Without fine cells there is nothing to filter: radius 0 pairs no cells.
    const double coarseRadius = subdivision > 0 ? rmin / subdivision : 0.0;
    Filter coarse = lopsidedConeFilter(nelx, nely, coarseRadius);
    Hcoarse = std::move(coarse.weights);
    HcoarseNonZero = std::move(coarse.nonZero);
    HsCoarse = rowSums(HcoarseNonZero);
    applyMaximumRule(HsCoarse, numberOfCoarseElements);

    Filter mesh = symmetricConeFilter(nelx * subdivision * meshFactor,
                                      nely * subdivision * meshFactor, meshRmin);
    meshH = std::move(mesh.weights);
    meshHNonZero = std::move(mesh.nonZero);
    meshHs = rowSums(meshHNonZero);
}

void SolverApp::setFilterMatBlob() {
    blobH = symmetricConeFilter(nelx, nely, rminBlob).weights;
    blobHs = rowSums(blobH);
}

void SolverApp::filterSensitivities() {
    if (useDensityFilter) {
        HNonZero.multiply(false, 1.0, 0.0, dc, dcFiltered);
        HNonZero.multiply(false, 1.0, 0.0, dv, dvFiltered);
        dcFiltered.elemDivide(Hs, dc);
        dvFiltered.elemDivide(Hs, dv);
        return;
    }
    dc.elemMultiply(rho);
    HNonZero.multiply(false, 1.0, 0.0, dc, dcFiltered);
    dcFiltered.elemDivide(Hs, dc);
    // No guard on the density: it is 0 only in passive void cells. One that is set free brings a
    // value that is no number, and the update knows how to deal with it.
    dc.elemDivide(rho);
}

void SolverApp::filterBlobSensitivities() {
    if (useDensityFilter) return;
    constexpr double leastWeight = 0.001;
    DenseMatrix& w = coarseWork;
    for (unsigned i = 0; i < numberOfCoarseElements; ++i) {
        w(i, 0) = std::max(leastWeight, 1.0 - blobMask(i, 0));
    }
    blobSensitivity.elemMultiply(w);
    HcoarseNonZero.multiply(false, 1.0, 0.0, blobSensitivity, blobSensitivityFiltered);
    blobSensitivityFiltered.elemDivide(HsCoarse, blobSensitivity);
    blobSensitivity.elemDivide(w);
}

void SolverApp::filterBlobDensities(int mode) {
    if (mode != 0 && mode != 2) return;
    const DenseMatrix& mask = mode == 0 ? blobMask : circleMask;
    DenseMatrix& filtered = mode == 0 ? blobMaskFiltered : circleMaskFiltered;
    mask.elemDivide(blobHs, coarseWork);
    blobH.multiply(false, 1.0, 0.0, coarseWork, filtered);
}

void SolverApp::densityFilterWithModifiedRadius() {
    meshHNonZero.multiply(false, 1.0, 0.0, meshRho, meshRhoFiltered);
    meshRhoFiltered.elemDivide(meshHs);
}
