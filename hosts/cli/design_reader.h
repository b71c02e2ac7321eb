#pragma once

#include <filesystem>
#include <string>

#include "format/scene.h"

using namespace voxam;

/// Replaces the densities of a scene by those of a design file. Of a symmetric scene the file may
/// hold the half or the whole of the plate. Throws InputError naming the option or the file.
void readDesignInto(Scene& scene, const std::filesystem::path& file, const std::string& option);
