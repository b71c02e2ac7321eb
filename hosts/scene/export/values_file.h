#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "checks/assessment.h"
#include "format/scene.h"

namespace voxam::inline files {

/// Endings of files with the values of an analysis.
inline const std::vector<std::string> VALUES_ENDINGS = {".csv", ".vti"};

/// A design and the results of its analysis. Loads are in units of force, lengths in edges of an
/// element of the scene times `elementSize`, and Young's modulus and the thickness are 1.
struct AnalysedDesign {
    const Scene& scene;  ///< its load cases in use are written
    const Field& design;
    const std::vector<PlateState>& states;  ///< of each load case, with all their values
    double elementSize = 1;
};

/// The values by element: a line for each, the top row first, with the place of its centre (y
/// down), its density and, for each load case in use, energy, stress in x and y, shear and von
/// Mises stress.
std::vector<std::uint8_t> encodeElementsCsv(const AnalysedDesign& analysed);

/// The values by node: its place and its displacement for each load case in use, in y downwards;
/// the fields of nodes without material are empty.
std::vector<std::uint8_t> encodeNodesCsv(const AnalysedDesign& analysed);

/// Values by element and by node in a file of VTK's XML format for images, as plain text. There y
/// points up, so rows run from the bottom, and shear and displacements in y have the other sign.
/// Nodes without material have a displacement of 0, because the format has no missing values.
std::vector<std::uint8_t> encodeVti(const AnalysedDesign& analysed);

/// The file for values by node that goes with a file for values by element: "OUT-nodes.csv" for
/// "OUT.csv".
std::filesystem::path nodesFileOf(const std::filesystem::path& elementsFile);

}  // namespace voxam::inline files
