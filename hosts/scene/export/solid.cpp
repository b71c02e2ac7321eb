#include "export/solid.h"

#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <stdexcept>
#include <tuple>

namespace voxam::inline files {

namespace {

using Triangles = std::vector<std::array<std::size_t, 3>>;

/// GLU's tessellator, which needs no display. It is to make triangles of the corners of an outline
/// and of no others: walls stand on the edges of the outline, and would not meet edges that were
/// split.
class Tessellator {
public:
    Tessellator() : tessellator(gluNewTess(), gluDeleteTess) {
        if (!tessellator) throw std::bad_alloc();
        GLUtesselator* const tess = tessellator.get();
        using Callback = void (*)();
        gluTessCallback(tess, GLU_TESS_VERTEX_DATA, reinterpret_cast<Callback>(addCorner));
        // Asked for the edges of the border, it makes separate triangles, no strips and fans.
        gluTessCallback(tess, GLU_TESS_EDGE_FLAG, reinterpret_cast<Callback>(ignoreEdge));
        gluTessCallback(tess, GLU_TESS_COMBINE_DATA, reinterpret_cast<Callback>(addCrossing));
        gluTessCallback(tess, GLU_TESS_ERROR_DATA, reinterpret_cast<Callback>(fail));
        gluTessNormal(tess, 0, 0, 1);
    }

    /// `corners` holds those of the contours, one contour after the other.
    Triangles triangulate(const std::vector<Contour>& contours, std::vector<Corner>& corners) {
        GLUtesselator* const tess = tessellator.get();
        first = corners.data();
        gluTessBeginPolygon(tess, this);
        auto corner = corners.begin();
        for (const Contour& contour : contours) {
            gluTessBeginContour(tess);
            for (std::size_t i = 0; i < contour.corners.size(); ++i, ++corner)
                gluTessVertex(tess, corner->data(), &*corner);
            gluTessEndContour(tess);
        }
        gluTessEndPolygon(tess);
        if (failed || found.size() % 3 != 0) throw std::runtime_error("triangulation failed");
        Triangles triangles;
        for (std::size_t i = 0; i < found.size(); i += 3)
            triangles.push_back({found[i], found[i + 1], found[i + 2]});
        return triangles;
    }

private:
    static void addCorner(void* corner, void* self) {
        auto& tessellator = *static_cast<Tessellator*>(self);
        tessellator.found.push_back(
            static_cast<std::size_t>(static_cast<const Corner*>(corner) - tessellator.first));
    }
    static void ignoreEdge(GLboolean) {}
    static void addCrossing(const GLdouble*, void* const*, const GLfloat*, void** result,
                            void* self) {
        *result = nullptr;
        static_cast<Tessellator*>(self)->failed = true;
    }
    static void fail(GLenum, void* self) { static_cast<Tessellator*>(self)->failed = true; }

    std::unique_ptr<GLUtesselator, void (*)(GLUtesselator*)> tessellator;
    const Corner* first = nullptr;
    std::vector<std::size_t> found;
    bool failed = false;
};

using Triangle = Triangles::value_type;

double distance(const Corner& a, const Corner& b) { return std::hypot(b[0] - a[0], b[1] - a[1]); }

/// Whether the corners lie on a line, but for rounding. If so, the longest side is made to run from
/// the first corner to the second.
bool isFlat(Triangle& triangle, const std::vector<Corner>& corners) {
    constexpr double rounding = 1e-12;
    const auto corner = [&](std::size_t i) { return corners[triangle[i % 3]]; };
    const auto [a, b, c] = std::tuple(corner(0), corner(1), corner(2));
    const double area = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
    std::size_t longest = 0;
    for (const std::size_t i : {1u, 2u})
        if (distance(corner(i), corner(i + 1)) > distance(corner(longest), corner(longest + 1)))
            longest = i;
    const double length = distance(corner(longest), corner(longest + 1));
    if (std::abs(area) > rounding * length * (length + std::hypot(a[0], a[1]))) return false;
    std::rotate(triangle.begin(), triangle.begin() + static_cast<long>(longest), triangle.end());
    return true;
}

/// Gives each flat triangle, of three corners on a line, to the triangle beyond its longest side:
/// together they make two others. That side is inside the material, because no corner lies on an
/// edge of the outline.
void removeFlatTriangles(Triangles& triangles, const std::vector<Corner>& corners) {
    std::map<std::pair<std::size_t, std::size_t>, std::size_t> ofSide;
    const auto enter = [&](std::size_t number) {
        const Triangle& t = triangles[number];
        for (std::size_t i = 0; i < 3; ++i) ofSide[{t[i], t[(i + 1) % 3]}] = number;
    };
    for (std::size_t i = 0; i < triangles.size(); ++i) enter(i);
    bool changed = true;
    for (std::size_t pass = 0; changed && pass < triangles.size(); ++pass) {
        changed = false;
        for (std::size_t i = 0; i < triangles.size(); ++i) {
            if (!isFlat(triangles[i], corners)) continue;
            const auto [a, b, middle] = triangles[i];
            const auto found = ofSide.find({b, a});
            if (found == ofSide.end()) continue;
            const std::size_t other = found->second;
            const Triangle& t = triangles[other];
            const std::size_t far = t[0] + t[1] + t[2] - a - b;
            if (far == middle) continue;
            triangles[i] = {b, middle, far};
            triangles[other] = {middle, a, far};
            ofSide.erase({a, b});
            ofSide.erase({b, a});
            enter(i);
            enter(other);
            changed = true;
        }
    }
}

std::vector<Corner> cornersAt(double z, const Outline& outline) {
    std::vector<Corner> corners;
    for (const Contour& contour : outline.contours)
        for (const auto& [x, y] : contour.corners) corners.push_back({x, outline.height - y, z});
    return corners;
}

}  // namespace

Solid extrude(const Outline& outline, double thickness) {
    Solid solid{cornersAt(0, outline), {}};
    const std::size_t above = solid.corners.size();  // from a corner to the one above it
    Triangles cap = Tessellator().triangulate(outline.contours, solid.corners);
    removeFlatTriangles(cap, solid.corners);
    for (const auto& [a, b, c] : cap) {
        solid.triangles.push_back({a, c, b});
        solid.triangles.push_back({a + above, b + above, c + above});
    }
    for (const Corner& corner : cornersAt(thickness, outline)) solid.corners.push_back(corner);
    std::size_t begin = 0;
    for (const Contour& contour : outline.contours) {
        const std::size_t count = contour.corners.size();
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t a = begin + i;
            const std::size_t b = begin + (i + 1) % count;
            solid.triangles.push_back({a, b, b + above});
            solid.triangles.push_back({a, b + above, a + above});
        }
        begin += count;
    }
    return solid;
}

double volume(const Solid& solid) {
    double sum = 0;
    for (const auto& [i, j, k] : solid.triangles) {
        const Corner& a = solid.corners[i];
        const Corner& b = solid.corners[j];
        const Corner& c = solid.corners[k];
        sum += a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
               a[2] * (b[0] * c[1] - b[1] * c[0]);
    }
    return sum / 6;
}

}  // namespace voxam::inline files
