#include "cells.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "drawing.h"

namespace {

// Kinds of passive elements as a mark on the grid; 0 is none.
constexpr std::array<const char*, 4> kindNames = {"", "void", "solid", "secondSolid"};
constexpr std::array<char, 4> kindCharacters = {'.', 'o', '#', '2'};
constexpr const char* expectedCharacters =
    "'.' (free), 'o' (void), '#' (solid) or '2' (solid of a second kind)";
constexpr double farthest = 2000;  // from one end of the largest grid to beyond the other

/// The kind of each element as far as it is known.
class MarkedGrid {
public:
    MarkedGrid(int gridWidth, int gridHeight)
        : width(gridWidth),
          height(gridHeight),
          kinds(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

    void mark(const JsonValue& shape, int x, int y, int kind) {
        int& before = at(x, y);
        if (before != 0 && before != kind)
            shape.fail("element x " + std::to_string(x) + ", y " + std::to_string(y) +
                       " is in passive." + kindNames[static_cast<std::size_t>(before)] +
                       " already");
        before = kind;
    }

    void markShapes(const JsonValue& list, int kind) {
        for (const auto& shape : list.elements("an array of rectangles, discs and rings")) {
            shape.allowOnly({"x", "y", "radius"});
            shape.find("radius") ? markRing(shape, kind) : markRectangle(shape, kind);
        }
    }

    Cells marked(const JsonValue& list, int kind) {
        Cells cells;
        for (int x = 0; x < width; ++x)
            for (int y = 0; y < height; ++y)
                if (at(x, y) == kind) cells.push_back({x, y});
        if (cells.size() > maxCells)
            list.fail(std::to_string(cells.size()) + " elements, allowed are at most " +
                      std::to_string(maxCells));
        return cells;
    }

private:
    void markRectangle(const JsonValue& shape, int kind) {
        const std::string note = " (elements of the grid)";
        const Range columns = shape.at("x").range(width - 1, note);
        const Range rows = shape.at("y").range(height - 1, note);
        for (int x = columns.from; x <= columns.to; ++x)
            for (int y = rows.from; y <= rows.to; ++y) mark(shape, x, y, kind);
    }

    // A ring and the disc within it, or the ring around it, share no element: the inner radius
    // belongs to the ring, the outer one does not.
    void markRing(const JsonValue& shape, int kind) {
        const double centreX = shape.at("x").number(0, width);
        const double centreY = shape.at("y").number(0, height);
        const auto [inner, outer] = radii(shape.at("radius"));
        bool any = false;
        for (int x = 0; x < width; ++x)
            for (int y = 0; y < height; ++y) {
                const double distance = std::hypot(x + 0.5 - centreX, y + 0.5 - centreY);
                if (distance < inner || distance >= outer) continue;
                mark(shape, x, y, kind);
                any = true;
            }
        if (!any) shape.fail("has no element of the grid");
    }

    static std::array<double, 2> radii(const JsonValue& value) {
        if (!value.raw().is_array()) return {0, value.number(0, farthest)};
        const auto ends = value.elements("a radius");
        if (ends.size() != 2) value.fail("the radii of a ring are two numbers, [inner, outer]");
        return {ends[0].number(0, farthest), ends[1].number(0, farthest)};
    }

    int& at(int x, int y) {
        return kinds[static_cast<std::size_t>(x) * static_cast<std::size_t>(height) +
                     static_cast<std::size_t>(y)];
    }

    int width;
    int height;
    std::vector<int> kinds;
};

void markDrawing(const JsonValue& value, int width, int height, MarkedGrid& grid) {
    const auto rows = drawingRows(value, height, "rows of characters");
    for (int y = 0; y < height; ++y) {
        const JsonValue& row = rows[static_cast<std::size_t>(y)];
        const auto characters = drawingRow(row, width);
        for (int x = 0; x < width; ++x) {
            const char character = characters[static_cast<std::size_t>(x)];
            const auto* const found =
                std::find(kindCharacters.begin(), kindCharacters.end(), character);
            if (found == kindCharacters.end())
                failAtCharacter(row, x, character, expectedCharacters);
            grid.mark(row, x, y, static_cast<int>(found - kindCharacters.begin()));
        }
    }
}

void append(std::vector<short>& records, const Cells& cells) {
    for (const Cell& cell : cells) {
        records.push_back(static_cast<short>(cell.x));
        records.push_back(static_cast<short>(cell.y));
    }
}

}  // namespace

Cells readCells(const JsonValue& value, int width, int height) {
    MarkedGrid grid(width, height);
    grid.markShapes(value, 1);
    return grid.marked(value, 1);
}

PassiveCells readPassiveCells(const JsonValue& value, int width, int height) {
    MarkedGrid grid(width, height);
    if (value.raw().is_array()) {
        markDrawing(value, width, height, grid);
    } else {
        value.allowOnly({kindNames.begin() + 1, kindNames.end()});
        for (std::size_t kind = 1; kind < kindNames.size(); ++kind)
            if (const auto list = value.find(kindNames[kind]))
                grid.markShapes(*list, static_cast<int>(kind));
    }
    return {grid.marked(value, 1), grid.marked(value, 2), grid.marked(value, 3)};
}

std::vector<short> cellRecords(const Cells& cells) {
    std::vector<short> records = {static_cast<short>(cells.size())};
    append(records, cells);
    return records;
}

std::vector<short> passiveRecords(const PassiveCells& passive) {
    std::vector<short> records;
    for (const Cells* cells : {&passive.voids, &passive.solids, &passive.secondSolids})
        records.push_back(static_cast<short>(cells->size()));
    for (const Cells* cells : {&passive.voids, &passive.solids, &passive.secondSolids})
        append(records, *cells);
    return records;
}
