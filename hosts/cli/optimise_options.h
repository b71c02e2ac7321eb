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
