#include "checks/rigid_motions.h"

#include <algorithm>
#include <cmath>

namespace {

// Entries are of the size of 1 as long as points are, and whole numbers come out nearly exact.
constexpr double NOTHING = 1e-9;

}  // namespace

std::array<double, 3> RigidMotions::displacement(double x, double y, int direction) {
    if (direction == 0) return {1, 0, -y};
    return {0, 1, x};
}

void RigidMotions::hold(std::size_t body, double x, double y, int direction) {
    Row row(3 * bodies);
    const auto part = displacement(x, y, direction);
    std::copy(part.begin(), part.end(), row.begin() + static_cast<std::ptrdiff_t>(3 * body));
    rows.push_back(std::move(row));
}

void RigidMotions::join(std::size_t one, std::size_t other, double x, double y) {
    for (const int direction : {0, 1}) {
        Row row(3 * bodies);
        const auto part = displacement(x, y, direction);
        for (std::size_t i = 0; i < part.size(); ++i) {
            row[3 * one + i] = part[i];
            row[3 * other + i] = -part[i];
        }
        rows.push_back(std::move(row));
    }
}

std::vector<std::size_t> RigidMotions::reduce(std::vector<Row>& rows, std::size_t columns) {
    std::vector<std::size_t> pivots;
    for (std::size_t column = 0; column < columns && pivots.size() < rows.size(); ++column) {
        const auto next = rows.begin() + static_cast<std::ptrdiff_t>(pivots.size());
        const auto largest = std::max_element(next, rows.end(), [&](const Row& a, const Row& b) {
            return std::abs(a[column]) < std::abs(b[column]);
        });
        if (std::abs((*largest)[column]) < NOTHING) continue;
        std::iter_swap(next, largest);
        const double pivot = (*next)[column];
        for (double& value : *next) value /= pivot;
        for (auto row = rows.begin(); row != rows.end(); ++row) {
            const double factor = (*row)[column];
            if (row == next || factor == 0) continue;
            for (std::size_t i = column; i < columns; ++i) (*row)[i] -= factor * (*next)[i];
        }
        pivots.push_back(column);
    }
    return pivots;
}

std::vector<bool> RigidMotions::heldBodies() const {
    auto reduced = rows;
    const auto pivots = reduce(reduced, 3 * bodies);
    // A motion is 0 when its row says so, without any of the motions that remain free.
    std::vector<bool> isZero(3 * bodies, false);
    for (std::size_t row = 0; row < pivots.size(); ++row) {
        const auto others = std::count_if(reduced[row].begin(), reduced[row].end(),
                                          [](double value) { return std::abs(value) > NOTHING; });
        isZero[pivots[row]] = others == 1;
    }
    std::vector<bool> held(bodies);
    for (std::size_t body = 0; body < bodies; ++body)
        held[body] = isZero[3 * body] && isZero[3 * body + 1] && isZero[3 * body + 2];
    return held;
}
