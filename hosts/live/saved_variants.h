#pragma once

#include <deque>
#include <filesystem>

#include "variant.h"

class QByteArray;

// Variants are stored next to the scene file, in NAME.variants: the scene of each variant and its
// exact densities. Scores are computed again.

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
