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
    bool isQuiet = false;           ///< nothing on standard output
    bool isStrict = false;          ///< a warning makes the exit status 1
};

/// Scores the design of a scene without the parts that nothing holds, and prints the result; draws
/// it when asked to. Returns the exit status: 0; 1 when the design does not carry the loads to
/// supports that hold it, or warnings count and there was one. Throws InputError for a fault of the
/// input, and then writes no picture.
int runScore(const ScoreOptions& options);
