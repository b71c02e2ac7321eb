#pragma once

#include <deque>
#include <filesystem>

#include "variant.h"

class QByteArray;
class QString;

// Variants are stored next to the scene file, in NAME.variants. Each has the scene that it
// was kept with, and its densities to the last bit. Scores are computed again.

std::filesystem::path variantsFileOf(const std::filesystem::path& sceneFile);

/// Writes the variants next to their scene file, or removes the file if there are no variants.
/// Throws InputError.
void writeVariantsBeside(const std::filesystem::path& sceneFile,
                         const std::deque<Variant>& variants);

/// The variants next to a scene file, without their scores. Empty if there is no such file. Throws
/// InputError if it cannot be read.
std::deque<Variant> variantsBeside(const std::filesystem::path& sceneFile);

/// The content of a file with variants.
QByteArray textOf(const std::deque<Variant>& variants);
/// Variants from textOf(), without their scores. Throws InputError, which names `file`.
std::deque<Variant> variantsFrom(const QByteArray& text, const std::filesystem::path& file);

/// Densities to the last bit, as a text.
QString packed(const Field& field);
/// Densities of a scene from packed(). Throws InputError, which names `file`, unless they fit.
Field unpacked(const QString& text, const Scene& scene, const std::filesystem::path& file);
