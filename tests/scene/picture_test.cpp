// What a picture is made of: arrows, outlines of areas, colours.
#include "drawing/picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "drawing/area_outline.h"
#include "drawing/load_arrows.h"
#include "scene_fixture.h"

using namespace voxam;

namespace {

/// Nothing acts on it.
Scene plate() {
    Scene scene = clampedPlate(40, 20);
    scene.loads.clear();
    scene.supports.clear();
    scene.loadCases.resize(9);
    return scene;
}

Load load(int x, int y, double fx, double fy, int loadCase) {
    return {{x, x}, {y, y}, fx, fy, loadCase};
}

Point tip(const LoadArrow& arrow) { return arrow.tail + arrow.length * arrow.direction; }

double distance(Point a, Point b) { return std::hypot(a.x - b.x, a.y - b.y); }

TEST(LoadArrows, standSideBySideWhereTheyWouldCoverOneAnother) {
    Scene scene = plate();
    // Three down and one up at a node on the lower border; the latter comes from the same side as
    // the others go to.
    scene.loads = {load(20, 20, 0, 2, 3), load(20, 20, 0, 1, 0), load(20, 20, 0, -2, 1),
                   load(20, 20, 0, 2, 2)};
    const auto arrows = loadArrows(scene, {100, 100}, 10);
    ASSERT_EQ(arrows.size(), 4u);
    double left = 0;
    for (int i = 0; i < 4; ++i) {
        const LoadArrow& arrow = arrows[std::size_t(i)];
        EXPECT_EQ(arrow.loadCase, i);  // from the left
        EXPECT_GT(arrow.tail.x, left + 11);
        left = arrow.tail.x;
        EXPECT_NEAR(i == 1 ? tip(arrow).y : arrow.tail.y, 300, 1e-9);
    }
    EXPECT_NEAR((arrows[0].tail.x + arrows[3].tail.x) / 2, 300, 1e-9);
    EXPECT_GT(arrows[3].length, arrows[0].length);
}

TEST(LoadArrows, endAtTheirNodeWhereTheyHaveRoom) {
    Scene scene = plate();
    // From both sides, at right angles, and at another node.
    scene.loads = {load(20, 10, 0, 1, 0), load(20, 10, 0, -1, 1), load(20, 10, 1, 0, 2),
                   load(30, 10, 0, 1, 3)};
    for (const LoadArrow& arrow : loadArrows(scene, {0, 0}, 10))
        EXPECT_LT(distance(tip(arrow), {arrow.loadCase == 3 ? 300.0 : 200.0, 100}), 1e-9);
    scene.loads = {load(20, 10, 0, 0, 0)};
    EXPECT_TRUE(loadArrows(scene, {0, 0}, 10).empty());
}

TEST(LoadArrows, ofSeveralCasesOnARowKeepClear) {
    Scene scene = plate();
    for (int i = 0; i < 3; ++i) scene.loads.push_back({{0, 40}, {0, 0}, 0, 1, i});
    const auto arrows = loadArrows(scene, {0, 0}, 10);
    EXPECT_GT(arrows.size(), 12u);
    for (const LoadArrow& a : arrows)
        for (const LoadArrow& b : arrows) EXPECT_TRUE(&a == &b || distance(a.tail, b.tail) > 11);
}

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;

Vector times(const Matrix& matrix, const Vector& v) {
    Vector result;
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = matrix[i][0] * v[0] + matrix[i][1] * v[1] + matrix[i][2] * v[2];
    return result;
}

/// A colour in CIELAB, as somebody sees it whose eyes turn linear colours by `eyes`.
Vector seen(const Colour& colour, const Matrix& eyes) {
    Vector linear;
    for (std::size_t i = 0; i < 3; ++i)
        linear[i] =
            colour[i] <= 0.04045 ? colour[i] / 12.92 : std::pow((colour[i] + 0.055) / 1.055, 2.4);
    linear = times(eyes, linear);
    for (double& part : linear) part = std::clamp(part, 0.0, 1.0);
    Vector f = times(
        {{{0.4339, 0.3762, 0.1899}, {0.2126, 0.7152, 0.0722}, {0.0177, 0.1095, 0.8729}}}, linear);
    for (double& part : f) part = part > 0.008856 ? std::cbrt(part) : 7.787 * part + 16.0 / 116;
    return {116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])};
}

TEST(LoadArrows, haveColoursThatEverybodyTellsApart) {
    // In full, and without the cones for long, middle and short waves.
    const Matrix eyes[] = {{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
                           {{{0.152286, 1.052583, -0.204868},
                             {0.114503, 0.786281, 0.099216},
                             {-0.003882, -0.048116, 1.051998}}},
                           {{{0.367322, 0.860646, -0.227968},
                             {0.280085, 0.672501, 0.047413},
                             {-0.011820, 0.042940, 0.968881}}},
                           {{{1.255528, -0.076749, -0.178779},
                             {-0.078411, 0.930809, 0.147602},
                             {0.004733, 0.691367, 0.303900}}}};
    for (const Matrix& kind : eyes)
        for (int a = 0; a < LOAD_CASE_COLOURS; ++a)
            for (int b = 0; b < a; ++b) {
                const Vector u = seen(loadCaseColour(a), kind);
                const Vector v = seen(loadCaseColour(b), kind);
                EXPECT_GT(std::hypot(u[0] - v[0], u[1] - v[1], u[2] - v[2]), 25) << a << " " << b;
            }
}

double length(const std::vector<std::array<GridPoint, 2>>& lines) {
    return std::accumulate(lines.begin(), lines.end(), 0.0, [](double sum, const auto& line) {
        return sum + std::hypot(line[1].x - line[0].x, line[1].y - line[0].y);
    });
}

Area areaOf(const std::vector<Ring>& rings, int width, int height) {
    Area area;
    area.rings = rings;
    for (const Ring& ring : rings)
        for (const Cell& cell : cellsOf(ring, width, height)) area.cells.push_back(cell);
    std::sort(area.cells.begin(), area.cells.end());
    area.cells.erase(std::unique(area.cells.begin(), area.cells.end()), area.cells.end());
    return area;
}

const double PI = std::acos(-1.0);

TEST(AreaOutline, isACircleWhereAnAreaIsADisc) {
    EXPECT_NEAR(length(outlineOf(areaOf({{20, 10, 0, 8}}, 40, 20), 40, 20)), 16 * PI, 0.05);
    EXPECT_NEAR(length(outlineOf(areaOf({{20, 10, 5, 8}}, 40, 20), 40, 20)), 26 * PI, 0.05);
    // A ring and the disc within it show no line between them.
    EXPECT_NEAR(length(outlineOf(areaOf({{20, 10, 0, 5}, {20, 10, 5, 8}}, 40, 20), 40, 20)),
                16 * PI, 0.05);
    // Half a disc at the border of the plate, closed along the border.
    EXPECT_NEAR(length(outlineOf(areaOf({{0, 10, 0, 8}}, 40, 20), 40, 20)), 8 * PI + 16, 0.5);
}

TEST(AreaOutline, followsTheElementsElsewhere) {
    Area square;
    for (int x = 3; x < 6; ++x)
        for (int y = 0; y < 3; ++y) square.cells.push_back({x, y});
    EXPECT_NEAR(length(outlineOf(square, 40, 20)), 12, 1e-9);
    // A square beside a disc: both keep their own outline.
    Area both = areaOf({{20, 10, 0, 8}}, 40, 20);
    both.cells.insert(both.cells.begin(), square.cells.begin(), square.cells.end());
    EXPECT_NEAR(length(outlineOf(both, 40, 20)), 12 + 16 * PI, 0.05);
}

TEST(Picture, outlinesWhatHangsOnNothingAtItsBorderOnly) {
    // A block of the design's cells, four to an element, by rows.
    const Scene scene = plate();
    FloatingPart part{{}, 2};
    for (int y = 10; y < 13; ++y)
        for (int x = 20; x < 24; ++x) part.cells.push_back({x, y});
    PictureContent content{Field(40, 20, 1.0f), {}, "", "", {part}};
    const RgbImage image = drawPicture(scene, content, 20);
    const PictureLayout layout = pictureLayout(scene, 20);
    const auto isOutline = [&](double x, double y) {  // in elements
        const int across = layout.plateX + int(20 * x);
        const int down = layout.plateY + int(20 * y);
        const auto* pixel = &image.pixels[std::size_t(3 * (down * image.width + across))];
        return pixel[0] > pixel[1] + 100;
    };
    int border = 0;
    for (double x = 9.75; x < 12.5; x += 0.05)
        for (double y = 4.75; y < 7; y += 0.05) {
            const bool inside = x > 10.1 && x < 11.9 && y > 5.1 && y < 6.4;
            const bool outside = x < 9.9 || x > 12.1 || y < 4.9 || y > 6.6;
            EXPECT_FALSE((inside || outside) && isOutline(x, y)) << x << ", " << y;
            border += isOutline(x, y);
        }
    EXPECT_GT(border, 0);
}

TEST(Picture, leavesRoomForRulersAndFitsAnAnimation) {
    for (const int side : {1, 7, 60, 1000}) {
        Scene scene = plate();
        scene.width = scene.height = side;
        const double scale = animationScale(scene);
        const PictureLayout layout = pictureLayout(scene, scale);
        EXPECT_LE(layout.width, 600) << side;
        EXPECT_LE(layout.height, 720) << side;
        EXPECT_GE(layout.plateX, 80);
        EXPECT_GE(layout.width - layout.plateX - scale * side, 50);
        EXPECT_GE(layout.legendY - layout.plateY - scale * side, 70);
        const RgbImage image =
            drawPicture(scene, {Field(2 * side, 2 * side, 1.0f), {}, "", ""}, scale);
        const int middle = int(scale * side / 2);
        const auto pixel =
            std::size_t(3 * ((layout.plateY + middle) * layout.width + layout.plateX + middle));
        EXPECT_LT(image.pixels[pixel], 70) << side;
    }
}

TEST(Picture, hasTheArrowsOfItsLoadCases) {
    Scene scene = clampedPlate(12, 6);
    scene.loadCases.resize(2);
    scene.loadCasesInUse = {0, 1};
    scene.loads.push_back({{12, 12}, {0, 0}, 1, 0, 1});
    PictureContent content{Field(12, 6, 1), std::nullopt, "", ""};
    const auto both = drawPicture(scene, content, 20).pixels;
    content.loadCases = std::vector{1};
    const auto second = drawPicture(scene, content, 20).pixels;
    EXPECT_NE(second, both);
    scene.loads.front().fy = 0;
    EXPECT_EQ(second, drawPicture(scene, content, 20).pixels);
    scene.loads.back().fx = 0;
    EXPECT_NE(second, drawPicture(scene, content, 20).pixels);
}

}  // namespace
