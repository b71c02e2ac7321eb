#pragma once

#include <string>
#include <vector>

#include "format/json_value.h"

namespace voxam::inline format {

/// The rows of a drawing of the grid in a scene file, the top row first. Fails unless there is one
/// for each row of elements; `what` describes what the value should be, for the error.
std::vector<JsonValue> drawingRows(const JsonValue& value, int height, const std::string& what);

/// The characters of a row, `refinement` for each column of elements.
std::string drawingRow(const JsonValue& row, int width, int refinement = 1);

/// Fails unless a row has as many of `what` (such as "number") as the grid has columns, times the
/// refinement.
void checkDrawingRow(const JsonValue& row, std::size_t found, int width, int refinement,
                     const std::string& what);

/// Tells that a character of a row has no meaning; `expected` lists those that have.
[[noreturn]] void failAtCharacter(const JsonValue& row, int x, char character,
                                  const std::string& expected);

}  // namespace voxam::inline format
