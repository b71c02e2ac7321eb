#include "format/character_rows.h"

#include "format/text.h"

namespace voxam::inline format {

namespace {

void checkSize(const JsonValue& value, std::size_t found, int expected, const std::string& what,
               const std::string& why) {
    if (found != static_cast<std::size_t>(expected))
        value.fail(counted(found, what) + ", expected " + std::to_string(expected) + " (" + why +
                   ")");
}

}  // namespace

std::vector<JsonValue> drawingRows(const JsonValue& value, int height, const std::string& what) {
    auto rows = value.elements(what);
    checkSize(value, rows.size(), height, "row", "grid.height");
    return rows;
}

void checkDrawingRow(const JsonValue& row, std::size_t found, int width, int refinement,
                     const std::string& what) {
    std::string why = "grid.width";
    if (refinement > 1) why += formatted(", %d per element like the rows", refinement);
    checkSize(row, found, refinement * width, what, why);
}

std::string drawingRow(const JsonValue& row, int width, int refinement) {
    auto characters = row.text();
    checkDrawingRow(row, characters.size(), width, refinement, "character");
    return characters;
}

void failAtCharacter(const JsonValue& row, int x, char character, const std::string& expected) {
    const bool printable = character > ' ' && character <= '~';
    row.fail("column " + std::to_string(x) + " holds " +
             (printable ? "'" + std::string(1, character) + "'" : "another character") +
             ", expected " + expected);
}

}  // namespace voxam::inline format
