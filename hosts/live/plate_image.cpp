#include "plate_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "drawing/picture_colours.h"

using namespace voxam;

namespace {

constexpr int SHADES = 256;

/// Pixel values from void (0) to solid (SHADES - 1).
using Ramp = std::array<QRgb, SHADES>;

Ramp rampOf(const QColor& voids, const QColor& solid) {
    Ramp ramp;
    for (int i = 0; i < SHADES; ++i)
        ramp[static_cast<std::size_t>(i)] =
            mixed(voids, solid, static_cast<double>(i) / (SHADES - 1)).rgb();
    return ramp;
}

std::size_t shade(float density) {
    return static_cast<std::size_t>(std::clamp(density, 0.0f, 1.0f) * (SHADES - 1) + 0.5f);
}

/// Tints elements in an image with `refinement` pixels per edge of an element.
void tint(QImage& image, const Cells& elements, int refinement, const QColor& colour) {
    for (const Cell& cell : elements)
        for (int y = refinement * cell.y; y < refinement * (cell.y + 1); ++y) {
            auto* pixel = reinterpret_cast<QRgb*>(image.scanLine(y)) + refinement * cell.x;
            for (int x = 0; x < refinement; ++x, ++pixel)
                *pixel = mixed(QColor(*pixel), colour, picture_colours::BLOB_SHARE).rgb();
        }
}

}  // namespace

QImage materialImage(const Frame& frame, const Cells& blob, const PlateColours& colours) {
    const Ramp plain = rampOf(colours.voids, colours.solid);
    const Ramp tinted = rampOf(mixed(colours.voids, colours.blob, picture_colours::BLOB_SHARE),
                               mixed(colours.solid, colours.blob, picture_colours::BLOB_SHARE));
    const int width = frame.material.width / frame.refinement;
    Mask mask(width, frame.material.height / frame.refinement);
    mark(mask, blob);
    QImage image(frame.material.width, frame.material.height, QImage::Format_RGB32);
    const float* cell = frame.material.values.data();
    for (int y = 0; y < frame.material.height; ++y) {
        auto* pixel = reinterpret_cast<QRgb*>(image.scanLine(y));
        const std::uint8_t* inBlob = &mask.values[static_cast<std::size_t>(y / frame.refinement) *
                                                  static_cast<std::size_t>(width)];
        for (int x = 0; x < frame.material.width; ++x)
            *pixel++ = (inBlob[x / frame.refinement] != 0 ? tinted : plain)[shade(*cell++)];
    }
    return image;
}

QImage drawingImage(const Field& drawing, const std::optional<ShownEnergies>& shown, int refinement,
                    const Cells& blob, const PlateColours& colours) {
    const double average = shown ? shown->scale.average() : 0;
    const double most = SHADES - 1;
    Ramp energies;
    for (int i = 0; i < SHADES; ++i)
        energies[static_cast<std::size_t>(i)] = toQt(EnergyScale::colour(i / most)).rgb();
    const Ramp plain = rampOf(colours.voids, colours.solid);
    QImage image(drawing.width, drawing.height, QImage::Format_RGB32);
    for (int y = 0; y < drawing.height; ++y) {
        auto* pixel = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < drawing.width; ++x, ++pixel) {
            const float density = drawing.at(x, y);
            if (average <= 0 || density <= 0) {
                *pixel = plain[shade(density)];
                continue;
            }
            const double position = shown->scale.position(shown->energies.at(x, y) / average);
            const QRgb solid = energies[static_cast<std::size_t>(most * position + 0.5)];
            *pixel = density >= 1 ? solid : mixed(colours.voids, solid, density).rgb();
        }
    }
    tint(image, blob, refinement, colours.blob);
    return image;
}
