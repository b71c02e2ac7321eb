#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "format/scene.h"

namespace voxam::inline files {

/// Reads and checks a scene file, and the images that it refers to. Throws InputError naming the
/// file, the key, the value found and the values allowed. The file "-" is standard input; images
/// are then found in the working directory. `assignments`, such as "volumeFraction=0.4", replace
/// values of the scene.
Scene readScene(const std::filesystem::path& file,
                const std::vector<std::string>& assignments = {});

/// Reads the text of a scene. Errors name `file`, and images are found beside it.
Scene parseScene(const std::string& text, const std::filesystem::path& file);

}  // namespace voxam::inline files
