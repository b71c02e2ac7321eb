#pragma once

#include <string>

#include "format/scene.h"

namespace voxam::inline format {

/// The text of a scene file that reads back as the same scene. Densities that came from an image
/// are written as numbers. Keys with default values are omitted.
std::string sceneText(const Scene& scene);

}  // namespace voxam::inline format
