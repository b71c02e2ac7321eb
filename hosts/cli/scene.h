#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cells.h"
#include "field.h"
#include "json_value.h"

/// A force on the nodes of a rectangle. fx and fy are the total; the nodes share it equally.
/// Positive fx points right, positive fy points down.
struct Load {
    Range x;
    Range y;
    double fx = 0;
    double fy = 0;
    int loadCase = 0;
};

/// The nodes of a rectangle, held in x, in y or in both directions.
struct Support {
    Range x;
    Range y;
    bool fixX = false;
    bool fixY = false;
};

/// A new start of the optimiser, in the middle of a run.
struct Restart {
    bool keepsDesign = false;
    int subdivision = 1;  ///< of the design that starts afresh, like meshFactor
    int meshFactor = 1;
};

/// What changes before an iteration. Whatever has no value stays as it is.
struct Change {
    int iteration = 1;
    std::optional<std::vector<Load>> loads;
    std::optional<std::vector<Support>> supports;
    std::optional<double> volumeFraction;
    std::optional<double> penalty;
    std::optional<PassiveCells> passive;
    std::optional<Cells> blob;
    std::optional<std::vector<int>> loadCasesInUse;
    std::optional<Restart> restart;
    std::string summary;  ///< the keys of the scene file that the change consists of

    /// Whether it has more than a restart and the penalty, which go to the library otherwise.
    bool concernsSettings() const {
        return loads || supports || volumeFraction || passive || blob || loadCasesInUse;
    }
};

/// A plate with its loads and supports, as a scene file describes it. Node (x, y) is the top left
/// corner of element (x, y); nodes run from 0 to width and from 0 to height inclusive.
struct Scene {
    static constexpr int maxSide = 1000;  ///< elements in x and in y
    static constexpr int maxLoadCases = 64;
    static constexpr double maxForce = 1e6;  ///< magnitude of fx and of fy
    static constexpr double maxPenalty = 10;
    static constexpr int maxRefinement = 16;        ///< of subdivision and of meshFactor
    static constexpr int maxDesignCells = 1000000;  ///< of the grid divided by subdivision
    static constexpr int maxPictureCells = 4000000;
    static constexpr int maxFineSide = 32000;  ///< cells of design and picture in x and in y
    static constexpr int maxIterations = 1000000;
    static constexpr int maxChanges = 1000;

    std::string title;  ///< the file's name without extension when the scene has none
    std::string description;
    int width = 0;   ///< elements in x
    int height = 0;  ///< elements in y
    int loadCases = 1;
    std::vector<Load> loads;
    std::vector<Support> supports;
    std::vector<std::filesystem::path> files;  ///< the scene file and the images it refers to

    /// For a score: 0 (void) to 1 (solid) for each element.
    std::optional<Field> densities;

    // For an optimisation.
    double volumeFraction = 0;
    double penalty = 3;
    int subdivision = 1;  ///< cells of the design per edge of an element
    int meshFactor = 1;   ///< cells of the picture per edge of a cell of the design
    int iterations = 100;
    PassiveCells passive;
    Cells blob;
    std::vector<int> loadCasesInUse;
    std::vector<Change> timeline;  ///< by ascending iteration
};

/// Reads and checks a scene file for a score. Throws InputError naming the file, the key, the value
/// found and the values allowed. Keys that only concern the optimiser are accepted and not read.
Scene readScene(const std::filesystem::path& file);

/// Reads and checks a scene file for an optimisation, in the same way; densities are accepted and
/// not read.
Scene readSceneToOptimise(const std::filesystem::path& file);

/// Makes a change of the timeline. Of a restart the optimiser has to be told as well.
void apply(const Change& change, Scene& scene);

/// The library's records of five floats each, one for each node of a load.
std::vector<float> loadRecords(const Scene& scene);

/// The library's records of five floats each, one for each held direction of each node.
std::vector<float> supportRecords(const Scene& scene);
