#pragma once

#include <filesystem>
#include <string>

#include "format/scene.h"

using namespace voxam;

/// Replaces the densities of a scene by the densities of a design file. For a symmetric scene, the
/// file may contain the half or the whole plate. Throws InputError naming the option or the file.
void readDesignInto(Scene& scene, const std::filesystem::path& file, const std::string& option);
