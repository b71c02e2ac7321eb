#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "format/field.h"
#include "format/scene.h"

namespace voxam::inline files {

/// Endings of the files that hold the densities of a design.
inline const std::vector<std::string> DESIGN_ENDINGS = {".png", ".csv"};

/// Reads a design from a PNG file, 0 (void) to 1 (solid) for each cell: one pixel each, black solid
/// and white void. The size is width * height elements times the same whole number in both
/// directions. Throws InputError naming the file when it cannot be read or has another size.
Field readDesignPng(const std::filesystem::path& file, int width, int height);

/// The same from a CSV file, with a line of numbers for each row; commas or semicolons between
/// them. An error names line and column.
Field readDesignCsv(const std::filesystem::path& file, int width, int height);

/// Reads a file of the kind that its ending names, one of DESIGN_ENDINGS.
Field readDesign(const std::filesystem::path& file, int width, int height);

/// One grey pixel for each cell, in 256 shades. A cell is solid by half or more in the file exactly
/// if it is in the design. Throws std::runtime_error when the encoder fails.
std::vector<std::uint8_t> encodeDesignPng(const Field& design);

/// Numbers that read back as the same floats.
std::vector<std::uint8_t> encodeDesignCsv(const Field& design);

/// The bytes of a file of the kind that its ending names, one of DESIGN_ENDINGS.
std::vector<std::uint8_t> encodeDesign(const std::filesystem::path& file, const Field& design);

}  // namespace voxam::inline files
