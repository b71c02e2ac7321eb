#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "format/area.h"
#include "format/field.h"
#include "format/range.h"

namespace voxam::inline format {

/// A load case: forces that act at the same time. The loads name it by its number, from 0.
struct LoadCase {
    std::string name;   ///< empty if the scene does not name it; names need not differ
    double weight = 1;  ///< of its compliance in every sum over load cases

    bool operator==(const LoadCase&) const = default;
};

/// A force on the nodes of a rectangle. fx and fy are the total; the nodes share it equally.
/// Positive fx points right, positive fy points down.
struct Load {
    Range x;
    Range y;
    double fx = 0;
    double fy = 0;
    int loadCase = 0;

    bool operator==(const Load&) const = default;
};

/// The nodes of a rectangle, held in x, in y or in both directions.
struct Support {
    Range x;
    Range y;
    bool fixX = false;
    bool fixY = false;

    bool operator==(const Support&) const = default;
};

/// What acts on a plate, and what its design must fulfil. A timeline can change all of it. Each
/// member has an entry in setting_keys.cpp.
struct Settings {
    std::vector<Load> loads;
    std::vector<Support> supports;
    double volumeFraction = 0;  ///< 0 if the scene does not have it
    double penalty = 3;
    PassiveAreas passive;
    Area blob;
    std::vector<int> loadCasesInUse;  ///< ascending

    bool operator==(const Settings&) const = default;
};

/// A new start of the optimiser, in the middle of a run.
struct Restart {
    bool keepsDesign = false;
    int subdivision = 1;  ///< of the design that starts afresh, like meshFactor
    int meshFactor = 1;

    bool operator==(const Restart&) const = default;
};

/// A change of the timeline, which applies before its iteration.
struct Change {
    int iteration = 1;
    Settings settings;              ///< the new values of the settings that `keys` names
    std::vector<std::string> keys;  ///< keys of the scene file, of settings only
    std::optional<Restart> restart;

    /// Whether it replaces the setting of this key.
    bool has(const std::string& key) const;
    /// Whether it replaces more than the penalty, which each iteration passes to the library.
    bool concernsProblem() const;
    /// Its keys of the scene file, as a text for messages.
    std::string summary() const;

    bool operator==(const Change&) const = default;
};

/// The side of the plate on which a plane of symmetry lies; the scene describes one half.
enum class Symmetry { NONE, LEFT, RIGHT, TOP, BOTTOM };

/// Their words in a scene file, in the order of the enumerators. The word of NONE is empty.
extern const std::vector<std::string> SYMMETRY_NAMES;

/// A plate with its settings, as a scene file describes it. Node (x, y) is the top left corner of
/// element (x, y); nodes run from 0 to width and from 0 to height inclusive.
struct Scene : Settings {
    static constexpr int MAX_SIDE = 1000;  ///< elements in x and in y
    static constexpr int MAX_LOAD_CASES = 64;
    static constexpr std::size_t MAX_LOAD_CASE_NAME = 40;  ///< characters
    static constexpr double MIN_WEIGHT = 0.001;            ///< of a load case
    static constexpr double MAX_WEIGHT = 1000;
    static constexpr std::size_t MAX_TITLE = 200;
    static constexpr double MAX_NODES = 4e6;  ///< of all loads together, and of all supports
    static constexpr double MAX_FORCE = 1e6;  ///< magnitude of fx and of fy
    static constexpr double MIN_VOLUME_FRACTION = 0.01;
    static constexpr double MAX_PENALTY = 10;
    static constexpr int MAX_REFINEMENT = 16;  ///< of subdivision and of meshFactor
    /// Cells per edge of an element in a design that is read.
    static constexpr int MAX_DESIGN_REFINEMENT = MAX_REFINEMENT * MAX_REFINEMENT;
    static constexpr int MAX_DESIGN_CELLS = 1000000;  ///< of the grid divided by subdivision
    static constexpr int MAX_PICTURE_CELLS = 4000000;
    static constexpr int MAX_FINE_SIDE = 32000;  ///< cells of design and picture in x and in y
    static constexpr int MAX_ITERATIONS = 1000000;
    static constexpr int MAX_CHANGES = 1000;
    static constexpr double MIN_ELEMENT_SIZE = 1e-6;
    static constexpr double MAX_ELEMENT_SIZE = 1e6;

    std::string title;  ///< without one in the file, the file's name without extension
    std::string description;
    int width = 0;   ///< elements in x
    int height = 0;  ///< elements in y
    Symmetry symmetry = Symmetry::NONE;
    double elementSize = 1;  ///< edge of an element, in millimetres, for files with lengths
    std::vector<LoadCase> loadCases = std::vector<LoadCase>(1);
    /// Of a score: 0 (void) to 1 (solid) for each element, or for a whole number of cells per edge
    /// of an element.
    std::optional<Field> densities;
    int subdivision = 1;  ///< cells of the design per edge of an element
    int meshFactor = 1;   ///< cells of the picture per edge of a cell of the design
    int iterations = 100;
    std::vector<Change> timeline;              ///< by ascending iteration
    std::vector<std::filesystem::path> files;  ///< the scene file and the images it refers to

    /// Cells of the picture per edge of an element.
    int refinement() const { return subdivision * meshFactor; }

    int loadCaseCount() const { return static_cast<int>(loadCases.size()); }
    double weight(int loadCase) const {
        return loadCases[static_cast<std::size_t>(loadCase)].weight;
    }

    bool operator==(const Scene&) const = default;
};

/// Whether both scenes give the library the same problem. Titles, names of load cases, densities
/// and files do not matter.
bool hasSameProblem(const Scene& one, const Scene& other);

/// Every load case: 0, 1 and so on.
std::vector<int> allLoadCases(const Scene& scene);

/// The weight of each load case.
std::vector<double> weightsOf(const Scene& scene);

/// Whether a load case has another weight than 1.
bool hasWeights(const Scene& scene);

/// Whether the load cases have neither names nor weights, so that their number describes them.
bool hasPlainLoadCases(const Scene& scene);

/// How lists and pictures call a load case: its name, or "load case 2" without one.
std::string loadCaseLabel(const Scene& scene, int loadCase);

/// How messages call a load case after the words "load case": "2 (wind)", or "2" without a name.
std::string numberedLoadCase(const Scene& scene, int loadCase);

}  // namespace voxam::inline format
