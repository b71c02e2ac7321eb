#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "drawing/rgb_image.h"
#include "format/field.h"

namespace voxam::inline files {

/// Reads a PNG file as grey values from 0 (black) to 1 (white). Colours become their luminance,
/// transparency shows white. Throws InputError if the file cannot be read, or its size is not
/// width * height times a whole number up to `maxRefinement`.
Field readGreyPng(const std::filesystem::path& file, int width, int height, int maxRefinement = 1);

/// The bytes of a PNG file. Throws std::runtime_error if the encoder fails.
std::vector<std::uint8_t> encodePng(const RgbImage& image);

/// The bytes of a PNG file of width * height grey pixels of one byte, row by row from the top.
std::vector<std::uint8_t> encodeGreyPng(int width, int height,
                                        const std::vector<std::uint8_t>& pixels);

}  // namespace voxam::inline files
