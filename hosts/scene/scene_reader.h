#pragma once

#include <filesystem>
#include <string>

#include "scene.h"

/// Reads and checks a scene file, and the images that it refers to. Throws InputError naming the
/// file, the key, the value found and the values allowed.
Scene readScene(const std::filesystem::path& file);

/// Reads the text of a scene; `file` names it in errors, and images are found beside it.
Scene parseScene(const std::string& text, const std::filesystem::path& file);

/// Whether a scene file has comments, which no Scene knows of. False when it cannot be read.
bool hasComments(const std::filesystem::path& file);

/// Throws InputError unless the scene has what a score or an optimisation needs.
void requireScore(const Scene& scene);
void requireOptimisation(const Scene& scene);
