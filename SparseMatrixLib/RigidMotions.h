#pragma once

#include <cstdint>
#include <optional>
#include <vector>

/// Finds which of several rigid bodies can move when supports and common points hold them. An
/// infinitesimal rigid motion (u, v, w) displaces the point (x, y) by (u - w * y, v + w * x).
///
/// Points are nodes of a grid, so the conditions on the motions have whole coefficients. They are
/// solved modulo a large prime, without any rounding. The answer is wrong only if a determinant is
/// a multiple of the prime by chance, with a probability near 1e-9.
class RigidMotions {
public:
    /// The terms to compute before giving up: some seconds' work.
    static constexpr uint64_t MOST_WORK = 200'000'000;

    explicit RigidMotions(std::size_t bodyCount, uint64_t mostWork = MOST_WORK)
        : mostWork(mostWork), pivotRows(3 * bodyCount) {}

    /// The point (x, y) of a body does not move in a direction, 0 (x) or 1 (y).
    void hold(std::size_t body, unsigned x, unsigned y, int direction);

    /// Two bodies share the point (x, y).
    void join(std::size_t one, std::size_t other, unsigned x, unsigned y);

    /// For each body whether it cannot move at all. Nothing if the answer would take too much work,
    /// as for some ten thousand bodies that hang together in all directions.
    std::optional<std::vector<bool>> heldBodies() const;

private:
    struct Term {
        std::size_t unknown;
        uint64_t coefficient;
    };
    using Row = std::vector<Term>;  ///< sorted by unknown, no coefficient 0; the sum of all is 0

    void insert(Row row);
    Row difference(const Row& row, const Row& pivot);

    uint64_t mostWork;
    std::vector<Row> pivotRows;  ///< by the unknown that comes first in them; empty for free ones
    uint64_t work = 0;           ///< terms computed so far
};
