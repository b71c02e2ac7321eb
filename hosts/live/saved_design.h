#pragma once

#include <filesystem>
#include <optional>

#include "format/scene.h"

using namespace voxam;

// A document is a scene and its design at the time of saving. The optimiser cannot start from a
// design, so a new run of the saved scene may take another topology. The design is stored as a
// picture next to the scene file, NAME.design.png. A text within the picture contains the exact
// densities, because the greys are rounded.

std::filesystem::path designFileOf(const std::filesystem::path& sceneFile);

/// Writes the design next to its scene file. Call it after writing the scene. Throws InputError.
void writeDesignBeside(const std::filesystem::path& sceneFile, const Field& design);

/// The design next to a scene file. Empty if there is no design, or if the scene was written later.
/// Throws InputError if the design cannot be read, or does not match the plate.
std::optional<Field> designBeside(const std::filesystem::path& sceneFile, const Scene& scene);
