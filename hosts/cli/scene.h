#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "field.h"

/// Inclusive range of node coordinates; a single node has from == to.
struct NodeRange {
    int from = 0;
    int to = 0;

    int count() const { return to - from + 1; }
};

/// A force on the nodes of a rectangle. fx and fy are the total; the nodes share it equally.
/// Positive fx points right, positive fy points down.
struct Load {
    NodeRange x;
    NodeRange y;
    double fx = 0;
    double fy = 0;
    int loadCase = 0;
};

/// The nodes of a rectangle, held in x, in y or in both directions.
struct Support {
    NodeRange x;
    NodeRange y;
    bool fixX = false;
    bool fixY = false;
};

/// A plate with its loads and supports, as a scene file describes it. Node (x, y) is the top left
/// corner of element (x, y); nodes run from 0 to width and from 0 to height inclusive.
struct Scene {
    static constexpr int maxSide = 1000;  ///< elements in x and in y
    static constexpr int maxLoadCases = 64;
    static constexpr double maxForce = 1e6;  ///< magnitude of fx and of fy

    std::string title;  ///< the file's name without extension when the scene has none
    std::string description;
    int width = 0;   ///< elements in x
    int height = 0;  ///< elements in y
    int loadCases = 1;
    std::vector<Load> loads;
    std::vector<Support> supports;
    std::optional<Field> densities;            ///< 0 (void) to 1 (solid) for each element
    std::vector<std::filesystem::path> files;  ///< the scene file and the images it refers to
};

/// Reads and checks a scene file. Throws InputError naming the file, the key, the value found and
/// the values allowed. Keys that only concern the optimiser are accepted and not read.
Scene readScene(const std::filesystem::path& file);

/// The library's records of five floats each, one for each node of a load.
std::vector<float> loadRecords(const Scene& scene);

/// The library's records of five floats each, one for each held direction of each node.
std::vector<float> supportRecords(const Scene& scene);
