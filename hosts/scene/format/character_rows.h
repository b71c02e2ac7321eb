#pragma once

#include <string>
#include <vector>

#include "format/json_value.h"

namespace voxam::inline format {

/// The rows of a drawing of the grid in a scene file, the top row first. Fails unless there is one
/// for each row of elements. The error says that the value should be `what`.
std::vector<JsonValue> drawingRows(const JsonValue& value, int height, const std::string& what);

/// The characters of a row, `refinement` for each column of elements.
std::string drawingRow(const JsonValue& row, int width, int refinement = 1);

/// Fails unless `found`, the count of `what` (such as "number") in a row, is the number of columns
/// of the grid times the refinement.
void checkDrawingRow(const JsonValue& row, std::size_t found, int width, int refinement,
                     const std::string& what);

/// Reports a character of a row that has no meaning. `expected` lists the valid characters.
[[noreturn]] void failAtCharacter(const JsonValue& row, int x, char character,
                                  const std::string& expected);

}  // namespace voxam::inline format
