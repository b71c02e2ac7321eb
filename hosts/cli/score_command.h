#pragma once

#include <filesystem>
#include <optional>

#include "design_exports.h"

struct ScoreOptions {
    std::filesystem::path scene;
    std::filesystem::path picture;  ///< empty: no picture
    std::optional<int> scale;       ///< pixels per element
    std::filesystem::path design;   ///< instead of the scene's densities; empty: those
    ExportOptions exports;          ///< without designs
};

/// Scores the design of a scene and prints the result; draws it when asked to. Returns the exit
/// status: 0, or 1 when the supports leave the plate free to move. Throws InputError for a fault of
/// the input, and then leaves no picture behind.
int runScore(const ScoreOptions& options);
