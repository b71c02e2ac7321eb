#pragma once

#include <filesystem>
#include <optional>

#include "format/scene.h"

using namespace voxam;

// A document is a scene and the design that was seen when it was saved. The optimiser cannot begin
// with a design, so a run of the saved scene alone may take another topology. The design is a
// picture beside the scene file, NAME.design.png.

std::filesystem::path designFileOf(const std::filesystem::path& sceneFile);

/// Writes the design beside its scene file, after that file. Throws InputError.
void writeDesignBeside(const std::filesystem::path& sceneFile, const Field& design);

/// The design beside a scene file. None if there is none, if it has another size than the plate, or
/// if the scene was written again since.
std::optional<Field> designBeside(const std::filesystem::path& sceneFile, const Scene& scene);
