#pragma once

#include <optional>
#include <string>

#include "field.h"
#include "png_image.h"
#include "scene.h"

/// What a picture shows besides the loads, the supports, the passive elements and the blob of its
/// scene.
struct PictureContent {
    /// Shade of the material, 0 (void) to 1 (solid), at the resolution of the grid or at any whole
    /// multiple of it.
    Field material;
    /// Energy of each element, of the same size as the material; without it the material is grey.
    std::optional<Field> energies;
    std::string title;
    std::string subtitle;
};

constexpr int MIN_PICTURE_SCALE = 1;
constexpr int MAX_PICTURE_SCALE = 64;

/// Pixels per element that make a picture about 900 pixels wide (less for a tall plate).
int defaultPictureScale(const Scene& scene);

/// Much the same, but whole pixels for each of the `refinement` cells per edge of an element, if
/// that does not make the picture too large.
int refinedPictureScale(const Scene& scene, int refinement);

/// Throws InputError when a picture at this scale would be too large to draw.
void checkPictureScale(const Scene& scene, int scale);

/// Draws the plate at `scale` pixels per element, its loads as arrows and its supports as
/// triangles, its passive elements outlined and its blob tinted, below a title and above a legend.
/// The plate's top left corner lies at
/// ((width - scale * scene.width) / 2, PICTURE_HEADER + PICTURE_MARGIN).
RgbImage drawPicture(const Scene& scene, const PictureContent& content, int scale);

/// Pixels around the plate, for arrows and supports, and above and below that for text.
constexpr int PICTURE_MARGIN = 50;
constexpr int PICTURE_HEADER = 52;
constexpr int PICTURE_LEGEND = 84;
constexpr int MIN_PICTURE_WIDTH = 560;
