// Marching squares over the centres of the cells, framed by the plate's border, on which the
// material continues as in the outermost cells, and by void at no distance beyond it. A line thus
// closes along the border by the same rules as elsewhere.
//
// Corners lie on a lattice, and never where a line could meet another: whatever uses the outline
// may rely on exact comparisons, and a file that rounds to single precision keeps them apart.
#include "export/outline.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace voxam::inline files {

namespace {

constexpr int LATTICE_STEPS = 256;  // per cell: 32000 cells stay within single precision
struct LatticePoint {
    long long x = 0;
    long long y = 0;
    bool operator==(const LatticePoint&) const = default;
};

/// Turns of 90 degrees around a square, clockwise from its top left: corner k, and edge k from
/// there to the next corner.
constexpr std::array<std::array<int, 2>, 4> CORNER_OFFSETS = {{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};

class Tracer {
public:
    Tracer(const Field& material, float densityOfLine)
        : cells(material),
          level(densityOfLine),
          columns(material.width + 2),
          rows(material.height + 2),
          next(2 * static_cast<std::size_t>(columns + 2) * static_cast<std::size_t>(rows + 2),
               NOWHERE) {}

    std::vector<std::vector<LatticePoint>> trace() {
        for (int y = -1; y < rows; ++y)
            for (int x = -1; x < columns; ++x) joinCrossings(x, y);
        std::vector<std::vector<LatticePoint>> lines;
        for (std::size_t first = 0; first < next.size(); ++first)
            if (next[first] != NOWHERE) lines.push_back(withoutStraightCorners(takeLine(first)));
        return lines;
    }

private:
    // Samples run from 0, on the border, over the cells to columns - 1, on the border; the void
    // beyond is -1 and columns.
    float sample(int x, int y) const {
        if (x < 0 || y < 0 || x >= columns || y >= rows) return 0;
        const float value =
            cells.at(std::clamp(x - 1, 0, cells.width - 1), std::clamp(y - 1, 0, cells.height - 1));
        return value > 0 ? std::min(value, 1.0f) : 0;
    }

    static long long along(int sample, int cellCount) {
        if (sample <= 0) return 0;
        if (sample > cellCount) return 1LL * LATTICE_STEPS * cellCount;
        return 1LL * LATTICE_STEPS * (sample - 1) + LATTICE_STEPS / 2;
    }

    LatticePoint place(int x, int y) const {
        return {along(x, cells.width), along(y, cells.height)};
    }

    // An edge between two samples has the number of its top or left end, doubled, and 1 more when
    // it goes down.
    std::size_t edgeNumber(int x, int y, bool down) const {
        const int row = y + 1;
        return 2 * (static_cast<std::size_t>(row) * static_cast<std::size_t>(columns + 2) +
                    static_cast<std::size_t>(x + 1)) +
               (down ? 1 : 0);
    }

    std::size_t edgeOfSquare(int x, int y, int edge) const {
        switch (edge) {
            case 0:
                return edgeNumber(x, y, false);
            case 1:
                return edgeNumber(x + 1, y, true);
            case 2:
                return edgeNumber(x, y + 1, false);
            default:
                return edgeNumber(x, y, true);
        }
    }

    LatticePoint crossing(std::size_t edge) const {
        const std::size_t end = edge / 2;
        const int x = static_cast<int>(end % static_cast<std::size_t>(columns + 2)) - 1;
        const int y = static_cast<int>(end / static_cast<std::size_t>(columns + 2)) - 1;
        const int farX = x + (edge % 2 == 0 ? 1 : 0);
        const int farY = y + (edge % 2 == 1 ? 1 : 0);
        const float from = sample(x, y);
        const double share = (level - from) / (sample(farX, farY) - from);
        const LatticePoint a = place(x, y);
        const LatticePoint b = place(farX, farY);
        return {between(a.x, b.x, share), between(a.y, b.y, share)};
    }

    // Strictly between the ends, where other lines end.
    static long long between(long long a, long long b, double share) {
        if (a == b) return a;
        return std::clamp(a + std::llround(share * static_cast<double>(b - a)), a + 1, b - 1);
    }

    // Going clockwise around the square, a line enters where material begins and leaves where it
    // ends. On a saddle the middle decides whether it cuts off the material or the void.
    void joinCrossings(int x, int y) {
        std::array<float, 4> values;
        for (std::size_t k = 0; k < 4; ++k)
            values[k] = sample(x + CORNER_OFFSETS[k][0], y + CORNER_OFFSETS[k][1]);
        const auto solid = [&](int corner) {
            return values[static_cast<std::size_t>(corner) % 4] >= level;
        };
        const double middle =
            (double(values[0]) + double(values[1]) + double(values[2]) + double(values[3])) / 4;
        const bool isJoined = middle > double(level);
        for (int entry = 0; entry < 4; ++entry) {
            if (solid(entry) || !solid(entry + 1)) continue;
            int exit = entry;
            do exit = (exit + (isJoined ? 3 : 1)) % 4;
            while (!solid(exit) || solid(exit + 1));
            next[edgeOfSquare(x, y, entry)] = edgeOfSquare(x, y, exit);
        }
    }

    std::vector<LatticePoint> takeLine(std::size_t first) {
        std::vector<LatticePoint> line;
        for (std::size_t edge = first; next[edge] != NOWHERE;) {
            const LatticePoint point = crossing(edge);
            if (line.empty() || !(line.back() == point)) line.push_back(point);
            const std::size_t following = next[edge];
            next[edge] = NOWHERE;
            edge = following;
        }
        if (line.size() > 1 && line.front() == line.back()) line.pop_back();
        return line;
    }

    static std::vector<LatticePoint> withoutStraightCorners(const std::vector<LatticePoint>& line) {
        std::vector<LatticePoint> corners;
        for (std::size_t i = 0; i < line.size(); ++i) {
            const LatticePoint& before = line[(i + line.size() - 1) % line.size()];
            const LatticePoint& after = line[(i + 1) % line.size()];
            const LatticePoint& at = line[i];
            if ((at.x - before.x) * (after.y - at.y) != (at.y - before.y) * (after.x - at.x))
                corners.push_back(at);
        }
        return corners;
    }

    static constexpr std::size_t NOWHERE = ~std::size_t{0};

    const Field& cells;
    float level;
    int columns;  // samples
    int rows;
    std::vector<std::size_t> next;  // the edge that a line crosses after this one
};

double signedArea(const std::vector<OutlinePoint>& corners) {
    double twice = 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const OutlinePoint& a = corners[i];
        const OutlinePoint& b = corners[(i + 1) % corners.size()];
        twice += a.y * b.x - a.x * b.y;
    }
    return twice / 2;
}

}  // namespace

Outline traceOutline(const Field& material, int refinement, double elementSize, double level) {
    // Divided first: quotients that have a short form keep it.
    const auto length = [&](auto steps) {
        return elementSize * (static_cast<double>(steps) / (double(LATTICE_STEPS) * refinement));
    };
    Outline outline;
    outline.width = length(1LL * LATTICE_STEPS * material.width);
    outline.height = length(1LL * LATTICE_STEPS * material.height);
    for (const auto& line : Tracer(material, static_cast<float>(level)).trace()) {
        Contour contour;
        for (const LatticePoint& point : line)
            contour.corners.push_back({length(point.x), length(point.y)});
        contour.hole = signedArea(contour.corners) < 0;
        outline.contours.push_back(std::move(contour));
    }
    return outline;
}

double area(const Outline& outline) {
    double sum = 0;
    for (const Contour& contour : outline.contours) sum += signedArea(contour.corners);
    return sum;
}

}  // namespace voxam::inline files
