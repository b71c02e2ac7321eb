#pragma once

#include <filesystem>
#include <string>

#include "format/scene.h"

/// Reads and checks a scene file, and the images that it refers to. Throws InputError naming the
/// file, the key, the value found and the values allowed.
Scene readScene(const std::filesystem::path& file);

/// Reads the text of a scene; `file` names it in errors, and images are found beside it.
Scene parseScene(const std::string& text, const std::filesystem::path& file);
