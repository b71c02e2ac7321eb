#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "export/outline.h"

namespace voxam::inline files {

/// Endings of files with an outline.
inline const std::vector<std::string> OUTLINE_ENDINGS = {".svg", ".dxf", ".stl"};

/// One black path in units of the plate. Programs that use lengths read them as millimetres.
std::vector<std::uint8_t> encodeSvg(const Outline& outline);

/// Closed polylines, y up: those around material are in the layer "outline", those around holes in
/// the layer "holes". The version of the format is R12, which every program reads.
std::vector<std::uint8_t> encodeDxf(const Outline& outline);

/// The outline as a plate of a thickness, in the binary form of the format; y up, z from 0.
std::vector<std::uint8_t> encodeStl(const Outline& outline, double thickness);

/// The bytes of a file in the format of its ending, one of OUTLINE_ENDINGS. Only an STL file has a
/// thickness.
std::vector<std::uint8_t> encodeOutline(const std::filesystem::path& file, const Outline& outline,
                                        double thickness);

}  // namespace voxam::inline files
