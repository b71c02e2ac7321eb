// Outlines of designs, and the files that hold them.
#include "export/outline.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <sstream>
#include <string>

#include "export/outline_file.h"
#include "export/solid.h"
#include "scene_fixture.h"

using namespace voxam;

namespace {

Field random(int width, int height, unsigned seed, bool blackAndWhite) {
    std::mt19937 generator(seed);
    Field field(width, height);
    for (float& value : field.values) {
        value = float(generator() % 1001) / 1000;
        if (blackAndWhite) value = std::round(value);
    }
    return field;
}

/// A disc with a hole, its rim grey over two cells, as a filter leaves it.
Field ring(int side, double inner, double outer) {
    Field field(side, side);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const double r = std::hypot(x + 0.5 - side / 2.0, y + 0.5 - side / 2.0);
            const auto edge = [](double depth) { return std::clamp(0.5 + depth / 2, 0.0, 1.0); };
            field.at(x, y) = float(std::min(edge(outer - r), edge(r - inner)));
        }
    return field;
}

std::size_t holes(const Outline& outline) {
    std::size_t count = 0;
    for (const Contour& contour : outline.contours) count += contour.hole ? 1 : 0;
    return count;
}

std::vector<float> floats(const std::vector<std::uint8_t>& stl, std::size_t triangle) {
    std::vector<float> values(12);
    std::memcpy(values.data(), &stl[84 + 50 * triangle], 48);
    return values;
}

/// Fails unless each edge of an STL file is there exactly once in each direction; returns how many
/// triangles there are.
std::size_t expectWatertight(const std::vector<std::uint8_t>& stl) {
    std::uint32_t count;
    std::memcpy(&count, &stl[80], sizeof count);
    EXPECT_EQ(stl.size(), 84 + 50 * std::size_t{count});
    using Place = std::array<float, 3>;
    std::set<std::pair<Place, Place>> edges;
    std::size_t twice = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto values = floats(stl, i);
        // A facet without an area has no normal.
        EXPECT_TRUE(values[0] != 0 || values[1] != 0 || values[2] != 0);
        for (std::size_t k = 0; k < 3; ++k) {
            const auto corner = [&](std::size_t n) {
                const float* const at = &values[3 + 3 * (n % 3)];
                return Place{at[0], at[1], at[2]};
            };
            twice += edges.emplace(corner(k), corner(k + 1)).second ? 0 : 1;
        }
    }
    EXPECT_EQ(twice, 0u);
    std::size_t alone = 0;
    for (const auto& [from, to] : edges) alone += edges.count({to, from}) == 1 ? 0 : 1;
    EXPECT_EQ(alone, 0u);
    return count;
}

TEST(Outline, ofASolidPlateIsItsBorder) {
    const Outline outline = traceOutline(Field(9, 6, 1.0f), 3, 2.0);
    EXPECT_EQ(outline.width, 6);
    EXPECT_EQ(outline.height, 4);
    ASSERT_EQ(outline.contours.size(), 1u);
    EXPECT_FALSE(outline.contours[0].hole);
    std::set<std::pair<double, double>> corners;
    for (const auto& [x, y] : outline.contours[0].corners) corners.emplace(x, y);
    EXPECT_EQ(corners, (std::set<std::pair<double, double>>{
                           {0.0, 0.0}, {6.0, 0.0}, {0.0, 4.0}, {6.0, 4.0}}));
    EXPECT_TRUE(traceOutline(Field(9, 6, 0.49f), 1).contours.empty());
}

TEST(Outline, liesWhereTheMaterialIsOneHalf) {
    // Between 0.2 and 0.8 the middle, between 0.4 and 1 a sixth of the way.
    Field field(3, 1);
    field.values = {0.2f, 0.8f, 0.8f};
    EXPECT_NEAR(area(traceOutline(field, 1)), 2, 1.0 / 256);
    field.values = {0.4f, 1, 1};
    EXPECT_NEAR(area(traceOutline(field, 1)), 2 + 0.5 - 1.0 / 6, 1.0 / 256);
}

TEST(Outline, hasTheAreaOfTheDesign) {
    const Field field = ring(160, 25, 70);
    const Outline outline = traceOutline(field, 4);
    const double material =
        std::accumulate(field.values.begin(), field.values.end(), 0.0) / (4 * 4);
    EXPECT_NEAR(area(outline), material, 0.002 * material);
    EXPECT_NEAR(area(outline), std::acos(-1.0) * (70 * 70 - 25 * 25) / 16, 1);
    EXPECT_EQ(outline.contours.size(), 2u);
    EXPECT_EQ(holes(outline), 1u);
    // Cut by the border on all sides, so that it reaches into the corners only.
    const Outline cut = traceOutline(ring(160, 90, 200), 4);
    EXPECT_EQ(cut.contours.size(), 4u);
    EXPECT_EQ(holes(cut), 0u);
    // A circle of radius 90 in a square of 160: its chords lie 80 from the centre.
    const double quarter = 80 * std::sqrt(90.0 * 90 - 80 * 80) +
                           90 * 90 * (std::acos(-1.0) / 4 - std::acos(80.0 / 90));
    EXPECT_NEAR(area(cut), (160 * 160 - 4 * quarter) / 16, 0.5);
}

TEST(Outline, keepsApartWhatTouchesInACorner) {
    EXPECT_EQ(traceOutline(designOf({"#.", ".#"}), 1).contours.size(), 2u);
    // Void that touches in a corner is one hole; that at the border is none.
    const Outline holey = traceOutline(designOf({"#####", "#.###", "##.##", "#####", "####."}), 1);
    EXPECT_EQ(holey.contours.size(), 2u);
    EXPECT_EQ(holes(holey), 1u);
    // Grey around the corner joins it.
    Field grey = designOf({"#.", ".#"});
    grey.at(1, 0) = 0.2f;
    EXPECT_EQ(traceOutline(grey, 1).contours.size(), 1u);
}

TEST(Outline, neverMeetsItself) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        const Outline outline = traceOutline(random(17, 11, seed, seed % 2 == 0), 3);
        std::map<std::pair<double, double>, int> visits;
        for (const Contour& contour : outline.contours) {
            EXPECT_GE(contour.corners.size(), 3u);
            for (const auto& [x, y] : contour.corners) {
                EXPECT_EQ(++visits[std::make_pair(x, y)], 1);
                EXPECT_TRUE(x >= 0 && y >= 0 && x <= outline.width && y <= outline.height);
            }
        }
    }
}

TEST(Solid, isWatertightAndHasTheVolumeOfTheOutline) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        const Field field = random(1 + int(seed % 40), 1 + int(seed % 23), seed, seed % 2 == 0);
        const Outline outline = traceOutline(field, 1 + int(seed % 5), 0.7);
        EXPECT_NEAR(volume(extrude(outline, 2.5)), 2.5 * area(outline), 1e-9) << seed;
        expectWatertight(encodeStl(outline, 2.5));
    }
}

TEST(Solid, staysWatertightInSinglePrecision) {
    // At the far end of the longest plate, with corners that floats do not hold exactly.
    Field field(32000, 3);
    const Field end = random(400, 3, 1, false);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 400; ++x) field.at(31600 + x, y) = end.at(x, y);
    EXPECT_GT(expectWatertight(encodeStl(traceOutline(field, 32, 1 / 3.0), 0.1)), 1000u);
}

TEST(OutlineFile, facesOutwardsInStl) {
    const auto stl = encodeStl(traceOutline(designOf({"###", "#.#", "###"}), 1), 2);
    const std::size_t count = expectWatertight(stl);
    double flux = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto v = floats(stl, i);
        // The normal that the file states is that of the order of its corners.
        const double ux = v[6] - v[3], uy = v[7] - v[4], uz = v[8] - v[5];
        const double wx = v[9] - v[3], wy = v[10] - v[4], wz = v[11] - v[5];
        const double n[] = {uy * wz - uz * wy, uz * wx - ux * wz, ux * wy - uy * wx};
        EXPECT_GT(n[0] * v[0] + n[1] * v[1] + n[2] * v[2], 0);
        flux += (n[0] * v[3] + n[1] * v[4] + n[2] * v[5]) / 6;
        EXPECT_TRUE(v[5] == 0 || v[5] == 2);
    }
    EXPECT_NEAR(flux, 2 * 8.5, 1e-5);  // the hole is the diamond of a lone void cell
}

TEST(OutlineFile, hasEveryContourInSvgAndDxf) {
    const Outline outline = traceOutline(designOf({"###..", "#.#..", "###.#"}), 2);
    const auto svg = encodeSvg(outline);
    const std::string text(svg.begin(), svg.end());
    EXPECT_NE(text.find(R"(width="2.5mm" height="1.5mm" viewBox="0 0 2.5 1.5")"), std::string::npos)
        << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), 'Z'), 3);

    const auto dxf = encodeDxf(outline);
    std::istringstream lines(std::string(dxf.begin(), dxf.end()));
    std::map<std::string, int> entities;
    std::string code, value, entity;
    double highest = 0;
    while (std::getline(lines, code) && std::getline(lines, value)) {
        if (code == "0") entity = value;
        if (code == "8") ++entities[entity + " " + value];
        if (code == "20" && entity == "VERTEX") highest = std::max(highest, std::stod(value));
    }
    EXPECT_EQ(value, "EOF");
    EXPECT_EQ(entities["POLYLINE outline"], 2);
    EXPECT_EQ(entities["POLYLINE holes"], 1);
    EXPECT_EQ(entities["VERTEX holes"], 4);
    EXPECT_EQ(highest, 1.5);
}

}  // namespace
