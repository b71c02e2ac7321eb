#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// What every command that reads a scene may be told.
struct CommonOptions {
    std::filesystem::path scene;
    bool isQuiet = false;   ///< nothing on standard output
    bool isStrict = false;  ///< a warning makes the exit status 1
};

/// Files that take a design out of the program, each of the kind that its ending names.
struct ExportOptions {
    std::vector<std::filesystem::path> pictures;
    std::vector<std::filesystem::path> designs;
    std::vector<std::filesystem::path> outlines;
    std::optional<double> thickness;  ///< of a solid, in elements
};

struct ScoreOptions : CommonOptions {
    std::optional<int> scale;      ///< pixels per element of the pictures
    std::filesystem::path design;  ///< instead of the scene's densities; empty: those
    ExportOptions exports;         ///< without designs
};

struct OptimiseOptions : CommonOptions {
    std::optional<int> iterations;    ///< instead of the scene's number
    std::optional<double> until;      ///< change of the densities that is small enough to stop
    std::filesystem::path animation;  ///< GIF file; empty: no animation
    ExportOptions exports;
    std::filesystem::path frames;   ///< directory; empty: no frames
    std::filesystem::path history;  ///< CSV file; empty: no history
    bool movesBlob = false;
};
