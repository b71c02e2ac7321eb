#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// The options of every command that reads a scene.
struct CommonOptions {
    std::filesystem::path scene;           ///< "-" is standard input
    std::vector<std::string> assignments;  ///< such as "volumeFraction=0.4"
    bool isQuiet = false;                  ///< nothing on standard output
    bool isStrict = false;                 ///< a warning makes the exit status 1
    bool isJson = false;                   ///< one JSON object on standard output, nothing else
};

/// The result of an analysis that a picture shows.
struct ViewOptions {
    std::string view;             ///< material, energy, stress or deformed
    std::optional<int> loadCase;  ///< only this one
};

/// Files to export a design to, in the formats of their endings.
struct ExportOptions {
    std::vector<std::filesystem::path> pictures;
    std::vector<std::filesystem::path> designs;
    std::vector<std::filesystem::path> outlines;
    std::vector<std::filesystem::path> values;
    std::optional<double> thickness;    ///< of a solid, in millimetres
    std::optional<double> elementSize;  ///< instead of the scene's
};

struct ScoreOptions : CommonOptions {
    ViewOptions view{"energy", {}};
    std::optional<int> scale;      ///< pixels per element of the pictures
    std::filesystem::path design;  ///< instead of the scene's densities; empty: not given
    ExportOptions exports;         ///< without designs
};

struct OptimiseOptions : CommonOptions {
    ViewOptions view{"material", {}};
    std::optional<int> iterations;    ///< instead of the scene's number
    std::optional<double> until;      ///< the run stops at this change of the densities
    std::filesystem::path animation;  ///< GIF file; empty: no animation
    ExportOptions exports;
    std::filesystem::path frames;   ///< directory; empty: no frames
    std::filesystem::path history;  ///< CSV file; empty: no history
    bool movesBlob = false;
};

struct CompareOptions {
    std::vector<std::filesystem::path> files;  ///< scenes, or designs for `scene`
    std::filesystem::path scene;               ///< empty: each file is a scene
    std::filesystem::path picture;             ///< empty: no picture
    bool isJson = false;
};

struct NewOptions {
    std::string kind;            ///< of the template
    std::filesystem::path file;  ///< empty: standard output
    int width = 0;               ///< 0: the template's width
    int height = 0;
};
