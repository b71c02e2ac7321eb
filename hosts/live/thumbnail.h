#pragma once

#include <QImage>

#include "format/scene.h"
#include "plate_colours.h"

using namespace voxam;

/// A small picture of a plate with its loads and supports, of `size` in device-independent pixels.
/// The material has smooth edges at the level that keeps its volume. A scene of half a symmetric
/// plate is shown whole. `material` has any whole number of cells per edge of an element; empty for
/// an empty plate. Can be called on any thread.
QImage thumbnailOf(const Scene& scene, const Field& material, const QSize& size, double pixelRatio,
                   const PlateColours& colours);
