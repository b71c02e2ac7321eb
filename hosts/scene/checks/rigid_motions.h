#pragma once

#include <array>
#include <vector>

/// Which of several rigid bodies can move when each other's points and the ground's hold them. A
/// rigid motion (u, v, w) displaces the point (x, y) by (u - w * y, v + w * x).
class RigidMotions {
public:
    explicit RigidMotions(std::size_t bodyCount) : bodies(bodyCount) {}

    /// The point of a body does not move in a direction, 0 (x) or 1 (y).
    void hold(std::size_t body, double x, double y, int direction);

    /// Two bodies share a point.
    void join(std::size_t one, std::size_t other, double x, double y);

    /// For each body whether it cannot move at all. The time grows with the third power of the
    /// number of bodies.
    std::vector<bool> heldBodies() const;

private:
    using Row = std::vector<double>;

    static std::array<double, 3> displacement(double x, double y, int direction);
    /// Reduced row echelon form; returns the pivot column of each row that is left.
    static std::vector<std::size_t> reduce(std::vector<Row>& rows, std::size_t columns);

    std::size_t bodies;
    std::vector<Row> rows;  // each a combination of motions that is 0
};
