// Cone filters: the weight of two cells is the filter radius less their distance, at least 0.

#include <algorithm>
#include <cmath>

#include "SolverApp.h"
#include "SolverConstants.h"

using kmat::DenseMatrix;
using kmat::SparseMatrix;

namespace {

// Weights of a grid of nx x ny cells, upper triangle. Each cell is paired with the cells of its own
// and the following columns, in rows from `before` rows back up to but excluding `after` rows
// ahead, and as many columns ahead. Weights of 0 in this neighbourhood are stored.
SparseMatrix coneFilter(unsigned nx, unsigned ny, double radius, int before, int after) {
    SparseMatrix weights(nx * ny, nx * ny, true, FILTER_CAPACITY);
    const auto columns = static_cast<int>(nx);
    const auto rows = static_cast<int>(ny);
    for (int i1 = 0; i1 < columns; ++i1) {
        for (int j1 = 0; j1 < rows; ++j1) {
            for (int i2 = i1; i2 < std::min(i1 + after, columns); ++i2) {
                // Within the own column the upper triangle starts at the cell itself.
                const int firstRow = i2 == i1 ? j1 : std::max(j1 - before, 0);
                for (int j2 = firstRow; j2 < std::min(j1 + after, rows); ++j2) {
                    const int squared = (i1 - i2) * (i1 - i2) + (j1 - j2) * (j1 - j2);
                    weights.getValue(static_cast<unsigned>(i1 * rows + j1),
                                     static_cast<unsigned>(i2 * rows + j2)) +=
                        std::max(0.0, radius - std::sqrt(squared));
                }
            }
        }
    }
    weights.build();
    return weights;
}

// Deliberately lopsided: from R + 1 cells back to R - 1 cells ahead.
SparseMatrix lopsidedConeFilter(unsigned nx, unsigned ny, double radius) {
    const int R = static_cast<int>(std::ceil(radius));
    return coneFilter(nx, ny, radius, R + 1, R);
}

SparseMatrix symmetricConeFilter(unsigned nx, unsigned ny, double radius) {
    const int R = static_cast<int>(std::floor(radius));
    return coneFilter(nx, ny, radius, R, R + 1);
}

DenseMatrix rowSums(const SparseMatrix& weights) {
    return weights * DenseMatrix(weights.getRows(), 1, 1.0);
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
    H = lopsidedConeFilter(nelx * subdivision, nely * subdivision, rmin);
    Hs = rowSums(H);
    applyMaximumRule(Hs, numberOfCoarseElements);

    const double coarseRadius = subdivision > 0 ? rmin / subdivision : 0.0;
    Hcoarse = lopsidedConeFilter(nelx, nely, coarseRadius);
    HsCoarse = rowSums(Hcoarse);
    applyMaximumRule(HsCoarse, numberOfCoarseElements);

    meshH = symmetricConeFilter(nelx * subdivision * meshFactor, nely * subdivision * meshFactor,
                                meshRmin);
    meshHs = rowSums(meshH);
}

void SolverApp::setFilterMatBlob() {
    blobH = symmetricConeFilter(nelx, nely, rminBlob);
    blobHs = rowSums(blobH);
}

void SolverApp::filterSensitivities() {
    if (useDensityFilter) {
        H.multiply(false, 1.0, 0.0, dc, dcFiltered);
        H.multiply(false, 1.0, 0.0, dv, dvFiltered);
        dcFiltered.elemDivide(Hs, dc);
        dvFiltered.elemDivide(Hs, dv);
        return;
    }
    dc.elemMultiply(rho);
    H.multiply(false, 1.0, 0.0, dc, dcFiltered);
    dcFiltered.elemDivide(Hs, dc);
    // No guard on the density: it is 0 only in passive void cells, whose value is never used.
    dc.elemDivide(rho);
}

void SolverApp::filterBlobSensitivities() {
    if (useDensityFilter) return;
    constexpr double leastWeight = 0.001;
    DenseMatrix w(numberOfCoarseElements, 1, 0.0);
    for (unsigned i = 0; i < numberOfCoarseElements; ++i) {
        w(i, 0) = std::max(leastWeight, 1.0 - blobMask(i, 0));
    }
    blobSensitivity.elemMultiply(w);
    Hcoarse.multiply(false, 1.0, 0.0, blobSensitivity, blobSensitivityFiltered);
    blobSensitivityFiltered.elemDivide(HsCoarse, blobSensitivity);
    blobSensitivity.elemDivide(w);
}

void SolverApp::filterBlobDensities(int mode) {
    if (mode != 0 && mode != 2) return;
    const DenseMatrix& mask = mode == 0 ? blobMask : circleMask;
    DenseMatrix& filtered = mode == 0 ? blobMaskFiltered : circleMaskFiltered;
    DenseMatrix normalised = mask.copy();
    normalised.elemDivide(blobHs);
    blobH.multiply(false, 1.0, 0.0, normalised, filtered);
}

void SolverApp::densityFilterWithModifiedRadius() {
    meshH.multiply(false, 1.0, 0.0, meshRho, meshRhoFiltered);
    meshRhoFiltered.elemDivide(meshHs);
}
