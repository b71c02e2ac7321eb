#include "format/area_reader.h"

#include <algorithm>
#include <array>
#include <string>

#include "format/character_rows.h"
#include "format/grid.h"
#include "format/limits.h"

namespace voxam::inline format {

namespace {

// Kinds of passive elements as a mark on the grid; 0 is none.
constexpr std::array<const char*, 4> KIND_NAMES = {"", "void", "solid", "secondSolid"};
constexpr std::array<char, 4> KIND_CHARACTERS = {'.', 'o', '#', '2'};
constexpr const char* EXPECTED_CHARACTERS =
    "'.' (free), 'o' (void), '#' (solid) or '2' (solid of a second kind)";

/// The kind of each element as far as it is known, and the rings that it was given by.
class MarkedGrid {
public:
    MarkedGrid(int gridWidth, int gridHeight)
        : width(gridWidth), height(gridHeight), kinds(width, height), loose(width, height) {}

    void mark(const JsonValue& shape, int x, int y, int kind) {
        const std::uint8_t before = kinds.at(x, y);
        if (before != 0 && before != kind)
            shape.fail("element x " + std::to_string(x) + ", y " + std::to_string(y) +
                       " is in passive." + KIND_NAMES[before] + " already");
        kinds.at(x, y) = static_cast<std::uint8_t>(kind);
    }

    void markShapes(const JsonValue& list, int kind) {
        for (const auto& shape :
             list.elements("a list of rectangles, discs and rings in brackets []")) {
            shape.allowOnly({"x", "y", "radius"});
            shape.find("radius") ? markRing(shape, kind) : markRectangle(shape, kind);
        }
    }

    /// Marks an element that no ring needs to belong to its area.
    void markLoose(const JsonValue& shape, int x, int y, int kind) {
        mark(shape, x, y, kind);
        loose.at(x, y) = static_cast<std::uint8_t>(kind);
    }

    Area marked(const JsonValue& list, int kind) {
        const Area area = joinedArea(cellsWith(loose, static_cast<std::uint8_t>(kind)),
                                     rings[static_cast<std::size_t>(kind)], width, height);
        list.failIf(faultOfArea(area));
        return area;
    }

private:
    void markRectangle(const JsonValue& shape, int kind) {
        const std::string note = " (elements of the grid)";
        const Range columns = shape.at("x").range(width - 1, note);
        const Range rows = shape.at("y").range(height - 1, note);
        for (int x = columns.from; x <= columns.to; ++x)
            for (int y = rows.from; y <= rows.to; ++y) markLoose(shape, x, y, kind);
    }

    void markRing(const JsonValue& shape, int kind) {
        const auto [inner, outer] = radii(shape.at("radius"));
        const Ring ring{shape.at("x").number(0, width), shape.at("y").number(0, height), inner,
                        outer};
        const Cells cells = cellsOf(ring, width, height);
        if (cells.empty()) shape.fail("has no element of the grid");
        for (const Cell& cell : cells) mark(shape, cell.x, cell.y, kind);
        rings[static_cast<std::size_t>(kind)].push_back(ring);
    }

    static std::array<double, 2> radii(const JsonValue& value) {
        if (!value.raw().is_array()) return {0, value.number(0, MAX_RADIUS)};
        const auto ends = value.elements("a list of two numbers");
        if (ends.size() != 2) value.fail("the radii of a ring are two numbers, [inner, outer]");
        const std::array<double, 2> found = {ends[0].number(0, MAX_RADIUS),
                                             ends[1].number(0, MAX_RADIUS)};
        if (found[0] > found[1]) value.fail("the radii run backwards, expected [inner, outer]");
        return found;
    }

    int width;
    int height;
    Mask kinds;
    Mask loose;  // the kinds of the elements of rectangles and drawings
    std::array<std::vector<Ring>, KIND_NAMES.size()> rings;
};

void markDrawing(const JsonValue& value, int width, int height, MarkedGrid& grid) {
    const auto rows = drawingRows(value, height, "rows of characters");
    for (int y = 0; y < height; ++y) {
        const JsonValue& row = rows[static_cast<std::size_t>(y)];
        const auto characters = drawingRow(row, width);
        for (int x = 0; x < width; ++x) {
            const char character = characters[static_cast<std::size_t>(x)];
            const auto* const found =
                std::find(KIND_CHARACTERS.begin(), KIND_CHARACTERS.end(), character);
            if (found == KIND_CHARACTERS.end())
                failAtCharacter(row, x, character, EXPECTED_CHARACTERS);
            grid.markLoose(row, x, y, static_cast<int>(found - KIND_CHARACTERS.begin()));
        }
    }
}

}  // namespace

Area readArea(const JsonValue& value, int width, int height) {
    MarkedGrid grid(width, height);
    grid.markShapes(value, 1);
    return grid.marked(value, 1);
}

PassiveAreas readPassiveAreas(const JsonValue& value, int width, int height) {
    MarkedGrid grid(width, height);
    if (value.raw().is_array()) {
        markDrawing(value, width, height, grid);
    } else {
        value.allowOnly({KIND_NAMES.begin() + 1, KIND_NAMES.end()});
        for (std::size_t kind = 1; kind < KIND_NAMES.size(); ++kind)
            if (const auto list = value.find(KIND_NAMES[kind]))
                grid.markShapes(*list, static_cast<int>(kind));
    }
    return {grid.marked(value, 1), grid.marked(value, 2), grid.marked(value, 3)};
}

}  // namespace voxam::inline format
