#pragma once

#include <filesystem>
#include <optional>

#include "design_exports.h"

struct OptimiseOptions {
    std::filesystem::path scene;
    std::optional<int> iterations;    ///< instead of the scene's number
    std::optional<double> until;      ///< change of the densities that is small enough to stop
    std::filesystem::path picture;    ///< empty: no picture
    std::filesystem::path animation;  ///< GIF file; empty: no animation
    ExportOptions exports;
    std::filesystem::path frames;   ///< directory; empty: no frames
    std::filesystem::path history;  ///< CSV file; empty: no history
    bool movesBlob = false;
    bool isQuiet = false;   ///< nothing on standard output
    bool isStrict = false;  ///< a warning makes the exit status 1
};

/// Optimises the design of a scene, tells how it gets on, and sums up at the end. Returns the exit
/// status: 0; 1 when the library could not go on, or warnings count and there was one; 130 or 143
/// after SIGINT or SIGTERM, which end the run after the iteration at hand. Throws InputError for a
/// fault of the input.
int runOptimise(const OptimiseOptions& options);
