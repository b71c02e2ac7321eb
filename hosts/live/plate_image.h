#pragma once

#include <QImage>

#include "frame.h"
#include "plate_colours.h"
#include "scene.h"

// Images of the material, a pixel for each cell of what they show.

/// The optimiser's picture; elements of `blob` are tinted.
QImage materialImage(const Frame& frame, const Cells& blob, const PlateColours& colours);

/// A drawn design; with energies, which elements work, in the colours of voxam's pictures.
/// Elements of `faint` (floating parts, say) are drawn so.
QImage drawingImage(const Field& drawing, const Field* energies, const Cells& faint,
                    const PlateColours& colours);
