#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "export/outline.h"

namespace voxam::inline files {

/// Endings of the files that hold an outline.
inline const std::vector<std::string> OUTLINE_ENDINGS = {".svg", ".dxf", ".stl"};

/// One black path in units of the plate, which programs that know of lengths read as millimetres.
std::vector<std::uint8_t> encodeSvg(const Outline& outline);

/// Closed polylines, y up, those around material in the layer "outline", those around holes in the
/// layer "holes". In the oldest version of the format that is in use (R12), which every program
/// reads.
std::vector<std::uint8_t> encodeDxf(const Outline& outline);

/// The outline as a plate of a thickness, in the binary form of the format; y up, z from 0.
std::vector<std::uint8_t> encodeStl(const Outline& outline, double thickness);

/// The bytes of a file of the kind that its ending names, one of OUTLINE_ENDINGS. Only an STL file
/// has a thickness.
std::vector<std::uint8_t> encodeOutline(const std::filesystem::path& file, const Outline& outline,
                                        double thickness);

}  // namespace voxam::inline files
