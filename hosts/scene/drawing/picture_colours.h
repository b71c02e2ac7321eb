#pragma once

#include <array>

#include "drawing/colour.h"

namespace voxam::inline drawing {

/// The colours of pictures. For the colours of load cases, see loadCaseColour().
namespace picture_colours {

inline constexpr Colour VOID_PLATE = {0.955, 0.955, 0.945};
inline constexpr Colour SOLID_GREY = {0.2, 0.2, 0.22};
inline constexpr Colour INK = {0.13, 0.13, 0.15};
inline constexpr Colour FAINT_INK = {0.42, 0.42, 0.45};
inline constexpr Colour SUPPORT = {0.25, 0.35, 0.4};
inline constexpr Colour BLOB = {0.35, 0.65, 0.92};
inline constexpr double BLOB_SHARE = 0.55;  ///< in the colour of an element of the blob
/// Kept void, solid, second solid. These colours are visible on every shade of the material.
inline constexpr std::array<Colour, 3> PASSIVE = {
    {{0.9, 0.5, 0.05}, {0.15, 0.65, 0.25}, {0.8, 0.25, 0.6}}};
inline constexpr double GHOST_SHARE = 0.16;  ///< of the undeformed plate
inline constexpr Colour FLOATING = {0.9, 0.1, 0.75};

}  // namespace picture_colours

}  // namespace voxam::inline drawing
