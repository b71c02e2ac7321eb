#pragma once

#include <QImage>
#include <optional>

#include "drawing/energy_scale.h"
#include "format/scene.h"
#include "frame.h"
#include "plate_colours.h"

using namespace voxam;

// Images of the material, with one pixel for each cell.

/// The optimiser's picture; elements of `blob` are tinted.
QImage materialImage(const Frame& frame, const Cells& blob, const PlateColours& colours);

/// Energies or stresses of elements, and the scale on which they are shown.
struct ShownEnergies {
    const Field& energies;
    const EnergyScale& scale;
};

/// A drawn design with `refinement` cells per edge of an element. With energies, it has the colours
/// of the energies in the program's pictures. The elements of `blob` are tinted.
QImage drawingImage(const Field& drawing, const std::optional<ShownEnergies>& shown, int refinement,
                    const Cells& blob, const PlateColours& colours);
