#include "ConeFilter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <new>
#include <vector>

using kmat::DenseMatrix;
using kmat::SparseMatrix;

namespace {

double coneWeight(double radius, int dx, int dy) {
    const double squared = static_cast<double>(dx) * dx + static_cast<double>(dy) * dy;
    return std::max(0.0, radius - std::sqrt(squared));
}

// How many cells away in one direction a weight may lie, on a grid of so many cells.
int reachOf(double radius, int cells) {
    return static_cast<int>(std::min<double>(std::ceil(radius), cells)) - 1;
}

// The number of pairs of cells with a weight, each pair once, from the middle of the cone outwards.
// In 64 bits, and no further than an int can count: that is far beyond what memory could hold.
int numberOfWeights(double radius, int columns, int rows) {
    int64_t count = 0;
    for (int dx = 0; dx <= reachOf(radius, columns); ++dx) {
        for (int dy = 0; dy <= reachOf(radius, rows); ++dy) {
            if (!(coneWeight(radius, dx, dy) > 0.0)) break;
            const int64_t pairs = int64_t{columns - dx} * (rows - dy);
            count += dx > 0 && dy > 0 ? 2 * pairs : pairs;
            if (count > std::numeric_limits<int>::max()) throw std::bad_alloc();
        }
    }
    return static_cast<int>(count);
}

// A cell that comes before another: its distance in columns and rows, and the weight of the two.
struct Neighbour {
    int dx;
    int dy;
    double weight;
};

// All neighbours with a weight that come no later than the cell itself, in the order of their
// numbers.
std::vector<Neighbour> earlierNeighbours(double radius, int columns, int rows) {
    std::vector<Neighbour> neighbours;
    for (int dx = -reachOf(radius, columns); dx <= 0; ++dx) {
        const int reach = reachOf(radius, rows);
        for (int dy = -reach; dy <= (dx == 0 ? 0 : reach); ++dy) {
            const double weight = coneWeight(radius, dx, dy);
            if (weight > 0.0) neighbours.push_back({dx, dy, weight});
        }
    }
    return neighbours;
}

// Column by column of the upper triangle, that is by the later cell of each pair.
SparseMatrix coneWeights(unsigned nx, unsigned ny, double radius) {
    const bool hasCells = nx > 0 && ny > 0;
    const int columns = hasCells ? static_cast<int>(nx) : 0;
    const int rows = hasCells ? static_cast<int>(ny) : 0;
    kmat::SparseColumnWriter writer(
        nx * ny, nx * ny, kmat::SYMMETRIC_UPPER,
        static_cast<std::size_t>(numberOfWeights(radius, columns, rows)));
    const auto neighbours = earlierNeighbours(radius, columns, rows);
    for (int x = 0; x < columns; ++x) {
        for (int y = 0; y < rows; ++y) {
            for (const auto& [dx, dy, weight] : neighbours) {
                if (x + dx < 0 || y + dy < 0 || y + dy >= rows) continue;
                writer.add((x + dx) * rows + y + dy, weight);
            }
            writer.endColumn();
        }
    }
    return writer.finish();
}

DenseMatrix rowSums(const SparseMatrix& weights) {
    DenseMatrix sums = weights * DenseMatrix(weights.getRows(), 1, 1.0);
    if (sums.getRows() != weights.getRows()) throw std::bad_alloc();
    return sums;
}

}  // namespace

ConeFilter::ConeFilter() : ConeFilter(0, 0, 0.0) {}

ConeFilter::ConeFilter(unsigned nx, unsigned ny, double radius)
    : weights(coneWeights(nx, ny, radius)), normaliser(rowSums(weights)) {}

void ConeFilter::applyMaximumRule(unsigned count) {
    double* const end = normaliser.begin() + std::min(count, normaliser.getRows());
    double largest = 1e-8;
    for (const double* value = normaliser.begin(); value != end; ++value) {
        largest = std::max(largest, *value);
    }
    std::fill(normaliser.begin(), end, largest);
}

void ConeFilter::apply(const DenseMatrix& field, DenseMatrix& filtered) const {
    weights.multiply(false, 1.0, 0.0, field, filtered);
    filtered.elemDivide(normaliser);
}

void ConeFilter::applyTransposed(const DenseMatrix& field, DenseMatrix& share,
                                 DenseMatrix& spread) const {
    field.elemDivide(normaliser, share);
    weights.multiply(false, 1.0, 0.0, share, spread);
}
