#pragma once

#include <QString>
#include <filesystem>

#include "format/scene.h"

using namespace voxam;

/// The exact values of a field as a text: in single precision, row by row, little-endian,
/// compressed, in base64.
QString packed(const Field& field);

/// The densities of a design from packed(), with any whole number of cells per edge of an element
/// of the scene. Throws InputError, which names `file`, if their number or their values are wrong.
Field unpacked(const QString& text, const Scene& scene, const std::filesystem::path& file);
