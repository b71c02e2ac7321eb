#include "plate_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "energy_scale.h"

namespace {

constexpr double BLOB_SHARE = 0.55;
constexpr double FAINT_SHARE = 0.7;
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

std::vector<std::uint8_t> maskOf(const Cells& cells, int width, int height) {
    std::vector<std::uint8_t> mask(static_cast<std::size_t>(width) *
                                   static_cast<std::size_t>(height));
    for (const Cell& cell : cells)
        if (cell.x >= 0 && cell.y >= 0 && cell.x < width && cell.y < height)
            mask[static_cast<std::size_t>(cell.y) * static_cast<std::size_t>(width) +
                 static_cast<std::size_t>(cell.x)] = 1;
    return mask;
}

QColor energyColour(double position) {
    const Colour colour = EnergyScale::colour(position);
    return QColor::fromRgbF(static_cast<float>(colour[0]), static_cast<float>(colour[1]),
                            static_cast<float>(colour[2]));
}

}  // namespace

QImage materialImage(const Frame& frame, const Cells& blob, const PlateColours& colours) {
    const Ramp plain = rampOf(colours.voids, colours.solid);
    const Ramp tinted = rampOf(mixed(colours.voids, colours.blob, BLOB_SHARE),
                               mixed(colours.solid, colours.blob, BLOB_SHARE));
    const int width = frame.columns / frame.refinement;
    const auto mask = maskOf(blob, width, frame.rows / frame.refinement);
    QImage image(frame.columns, frame.rows, QImage::Format_RGB32);
    const float* cell = frame.picture.data();
    for (int y = 0; y < frame.rows; ++y) {
        auto* pixel = reinterpret_cast<QRgb*>(image.scanLine(y));
        const std::uint8_t* inBlob =
            &mask[static_cast<std::size_t>(y / frame.refinement) * static_cast<std::size_t>(width)];
        for (int x = 0; x < frame.columns; ++x)
            *pixel++ = (inBlob[x / frame.refinement] != 0 ? tinted : plain)[shade(1 - *cell++)];
    }
    return image;
}

QImage drawingImage(const Field& drawing, const Field* energies, const Cells& faint,
                    const PlateColours& colours) {
    const auto isFaint = maskOf(faint, drawing.width, drawing.height);
    std::optional<EnergyScale> scale;
    if (energies != nullptr) scale.emplace(*energies, drawing);
    const auto colourAt = [&](int x, int y, std::size_t index) {
        QColor solid = colours.solid;
        if (scale && scale->average() > 0)
            solid = energyColour(scale->position(energies->at(x, y) / scale->average()));
        if (isFaint[index] != 0) solid = mixed(colours.voids, colours.edge, FAINT_SHARE);
        return mixed(colours.voids, solid, std::clamp(drawing.at(x, y), 0.0f, 1.0f));
    };
    QImage image(drawing.width, drawing.height, QImage::Format_RGB32);
    std::size_t index = 0;
    for (int y = 0; y < drawing.height; ++y)
        for (int x = 0; x < drawing.width; ++x) image.setPixel(x, y, colourAt(x, y, index++).rgb());
    return image;
}
