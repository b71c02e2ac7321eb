#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "format/scene.h"

namespace voxam::inline format {

/// Functions that read the densities of a design from a file, 0 (void) to 1 (solid), row by row:
/// width * height elements, times the same whole number up to Scene::MAX_DESIGN_REFINEMENT in both
/// directions. They throw InputError. If a reader is missing, scenes that need it are refused.
struct DesignReaders {
    using Reader = std::function<Field(const std::filesystem::path& file, int width, int height)>;

    Reader png;
    Reader csv;
};

/// Reads and checks the text of a scene. Errors name `file`, and the files of its densities are
/// found beside it. Throws InputError naming the file, the key, the value found and the
/// values allowed. `assignments`, such as "volumeFraction=0.4", replace values before they are
/// read.
Scene parseScene(const std::string& text, const std::filesystem::path& file,
                 const DesignReaders& readers, const std::vector<std::string>& assignments = {});

/// Whether a scene file has comments, which Scene does not store. False if it cannot be read.
bool hasComments(const std::filesystem::path& file);

/// Throws InputError unless the scene has what a score or an optimisation needs.
void requireScore(const Scene& scene);
void requireOptimisation(const Scene& scene);

}  // namespace voxam::inline format
