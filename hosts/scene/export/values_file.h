#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "checks/assessment.h"
#include "format/scene.h"

namespace voxam::inline files {

/// Endings of the files that hold the values of an analysis.
inline const std::vector<std::string> VALUES_ENDINGS = {".csv", ".vti"};

/// A design with what its analysis found. Loads are in units of force, lengths in edges of an
/// element of the scene times `elementSize`, and Young's modulus and the thickness are 1.
struct AnalysedDesign {
    const Scene& scene;  ///< whose load cases in use count
    const Field& design;
    const std::vector<PlateState>& states;  ///< of each load case, with all their values
    double elementSize = 1;
};

/// The values by element: a line for each, the top row first, with the place of its centre (y
/// down), its density and, for each load case in use, energy, stress in x and y, shear and von
/// Mises stress.
std::vector<std::uint8_t> encodeElementsCsv(const AnalysedDesign& analysed);

/// The values by node: its place and its displacement for each load case in use, in y downwards;
/// nothing stands for nodes without material.
std::vector<std::uint8_t> encodeNodesCsv(const AnalysedDesign& analysed);

/// Both in a file of VTK's XML format for images, as plain text. There y points up, so rows run
/// from the bottom, and shear and displacements in y have the other sign. Nodes without material
/// have a displacement of 0, because the format has no word for a missing value.
std::vector<std::uint8_t> encodeVti(const AnalysedDesign& analysed);

/// "OUT.csv" for values by element goes with "OUT-nodes.csv" for those by node.
std::filesystem::path nodesFileOf(const std::filesystem::path& elementsFile);

}  // namespace voxam::inline files
