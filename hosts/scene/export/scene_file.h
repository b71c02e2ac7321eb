#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "format/scene.h"

/// Reads and checks a scene file, and the images that it refers to. Throws InputError naming the
/// file, the key, the value found and the values allowed.
Scene readScene(const std::filesystem::path& file);

/// The same after assignments, such as "volumeFraction=0.4", that replace values of the scene. The
/// file "-" is standard input; images are then found in the working directory.
Scene readScene(const std::filesystem::path& file, const std::vector<std::string>& assignments);

/// Reads the text of a scene; `file` names it in errors, and images are found beside it.
Scene parseScene(const std::string& text, const std::filesystem::path& file);
