#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "checks/floating_parts.h"
#include "drawing/rgb_image.h"
#include "format/field.h"
#include "format/scene.h"
#include "run/views.h"

namespace voxam::inline drawing {

/// Describes the values of PictureContent::energies if they are stresses.
inline constexpr const char* STRESS_MEASURE =
    "Von Mises stress: force / mm\u00b2 at a thickness of 1 mm";

/// What a picture shows in addition to the loads, the supports, the passive elements and the blob
/// of its scene.
struct PictureContent {
    /// Shade of the material, 0 (void) to 1 (solid), at the resolution of the grid or at any whole
    /// multiple of it.
    Field material;
    /// Energy of each element, of the same size as the material; if empty, the material is grey.
    std::optional<Field> energies;
    std::string title;
    std::string subtitle;
    std::vector<FloatingPart> floating = {};  ///< to be outlined
    /// What the energies are, for the legend, which shows them as multiples of their average or as
    /// values.
    std::string measure = "Energy of an element as a multiple of the average";
    bool isAbsolute = false;
    /// Draws the deformed material over a ghost of the undeformed plate.
    std::optional<Deformation> deformation = {};
    /// Load cases whose arrows are drawn; if empty, all load cases in use.
    std::optional<std::vector<int>> loadCases = {};
};

constexpr int MIN_PICTURE_SCALE = 1;
constexpr int MAX_PICTURE_SCALE = 64;

/// Pixels per element that make a picture about 900 pixels wide (less for a tall plate).
int defaultPictureScale(const Scene& scene);

/// Close to the default, but with whole pixels for each of the `refinement` cells per edge of an
/// element, if that does not make the picture too large.
int refinedPictureScale(const Scene& scene, int refinement);

/// The scale of frames of an animation, at most about 600 pixels wide; below 1 for a large plate.
double animationScale(const Scene& scene);

/// Throws InputError if a picture at this scale would be too large to draw.
void checkPictureScale(const Scene& scene, int scale);

/// Draws the plate at `scale` pixels per element, its loads as arrows and its supports as
/// triangles, its passive elements outlined and its blob tinted, below a title and above a legend.
RgbImage drawPicture(const Scene& scene, const PictureContent& content, double scale);

/// The same drawing as the bytes of an SVG file.
std::vector<std::uint8_t> drawPictureSvg(const Scene& scene, const PictureContent& content,
                                         double scale);

/// Size of a picture in pixels, and the places of the plate's top left corner and of the legend.
struct PictureLayout {
    int width = 0;
    int height = 0;
    int plateX = 0;
    int plateY = 0;
    int legendY = 0;
};

PictureLayout pictureLayout(const Scene& scene, double scale);

}  // namespace voxam::inline drawing
