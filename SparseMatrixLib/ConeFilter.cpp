#include "ConeFilter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>

using kmat::DenseMatrix;

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
// In 64 bits, and no further than an int can count: a filter of more would take seconds to apply.
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

// In the order of the cells' numbers.
std::vector<ConeFilter::Neighbour> neighboursOf(double radius, int columns, int rows) {
    if (numberOfWeights(radius, columns, rows) == 0) return {};
    std::vector<ConeFilter::Neighbour> neighbours;
    const int columnReach = reachOf(radius, columns);
    const int rowReach = reachOf(radius, rows);
    for (int dx = -columnReach; dx <= columnReach; ++dx) {
        for (int dy = -rowReach; dy <= rowReach; ++dy) {
            const double weight = coneWeight(radius, dx, dy);
            if (weight > 0.0) neighbours.push_back({dx, dy, weight});
        }
    }
    return neighbours;
}

}  // namespace

ConeFilter::ConeFilter() : ConeFilter(0, 0, 0.0) {}

ConeFilter::ConeFilter(unsigned nx, unsigned ny, double radius)
    : columns(ny > 0 ? static_cast<int>(nx) : 0),
      rows(nx > 0 ? static_cast<int>(ny) : 0),
      cone(neighboursOf(radius, columns, rows)),
      normaliser(kmat::undefinedVector(nx * ny)) {
    const std::vector<double> ones(normaliser.getRows(), 1.0);
    sum(ones.data(), normaliser.begin());
}

void ConeFilter::applyMaximumRule(unsigned count) {
    double* const end = normaliser.begin() + std::min(count, normaliser.getRows());
    double largest = 1e-8;
    for (const double* value = normaliser.begin(); value != end; ++value) {
        largest = std::max(largest, *value);
    }
    std::fill(normaliser.begin(), end, largest);
}

void ConeFilter::apply(const DenseMatrix& field, DenseMatrix& filtered) const {
    sum(field.begin(), filtered.begin());
    filtered.elemDivide(normaliser);
}

void ConeFilter::applyTransposed(const DenseMatrix& field, DenseMatrix& share,
                                 DenseMatrix& spread) const {
    field.elemDivide(normaliser, share);
    sum(share.begin(), spread.begin());
}

// Each sum is formed in the order of the cells' numbers, like a product with the matrix of the
// weights. The cells of a column are summed side by side.
void ConeFilter::sum(const double* field, double* sums) const {
    for (int x = 0; x < columns; ++x) {
        double* const column = sums + std::ptrdiff_t{x} * rows;
        std::fill_n(column, rows, 0.0);
        for (const auto& [dx, dy, weight] : cone) {
            if (x + dx < 0 || x + dx >= columns) continue;
            const std::ptrdiff_t neighbour = std::ptrdiff_t{x + dx} * rows + dy;
            const int end = std::min(rows, rows - dy);
            for (int y = std::max(0, -dy); y < end; ++y) column[y] += weight * field[neighbour + y];
        }
    }
}
