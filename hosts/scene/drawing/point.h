#pragma once

namespace voxam::inline drawing {

/// A place or a direction in pixels, x to the right and y down.
struct Point {
    double x = 0;
    double y = 0;
};

inline Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
inline Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
inline Point operator*(double factor, Point p) { return {factor * p.x, factor * p.y}; }

}  // namespace voxam::inline drawing
