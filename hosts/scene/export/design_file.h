#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "format/field.h"
#include "format/scene.h"

namespace voxam::inline files {

/// Endings of files with the densities of a design.
inline const std::vector<std::string> DESIGN_ENDINGS = {".png", ".csv"};

/// Reads a design from a PNG file, 0 (void) to 1 (solid) for each cell: one pixel each, black solid
/// and white void. The size is width * height elements times the same whole number in both
/// directions. Throws InputError naming the file if it cannot be read or has another size.
Field readDesignPng(const std::filesystem::path& file, int width, int height);

/// Reads a design from a CSV file: a line of numbers for each row, separated by commas or
/// semicolons. Throws InputError like readDesignPng(); it also names line and column.
Field readDesignCsv(const std::filesystem::path& file, int width, int height);

/// Reads a file in the format of its ending, one of DESIGN_ENDINGS.
Field readDesign(const std::filesystem::path& file, int width, int height);

/// Reads a design for a scene. If the scene is symmetric, the file may contain the half or the
/// whole plate. Throws InputError if the halves differ.
Field readDesign(const std::filesystem::path& file, const Scene& scene);

/// One grey pixel for each cell, in 256 shades. Rounding never moves a density across 0.5. Throws
/// std::runtime_error if the encoder fails.
std::vector<std::uint8_t> encodeDesignPng(const Field& design);

/// Numbers that read back as the same floats.
std::vector<std::uint8_t> encodeDesignCsv(const Field& design);

/// The bytes of a file in the format of its ending, one of DESIGN_ENDINGS.
std::vector<std::uint8_t> encodeDesign(const std::filesystem::path& file, const Field& design);

}  // namespace voxam::inline files
