#pragma once

#include <optional>
#include <vector>

#include "format/field.h"
#include "format/scene.h"
#include "run/analysis.h"

namespace voxam::inline run {

/// The kind of a view of an analysed design.
enum class View { MATERIAL, ENERGY, STRESS, DEFORMED };

struct ViewChoice {
    View view = View::MATERIAL;
    /// Only this load case. Without it, all load cases in use; the deformed plate always is that of
    /// one load case, the first in use.
    std::optional<int> loadCase = {};

    bool operator==(const ViewChoice&) const = default;
};

/// How far the nodes of a plate have moved, in elements, at the resolution of a design; 0 where
/// there is no material.
struct Deformation {
    Field right;
    Field down;
    double magnification = 1;  ///< with which it is drawn
};

/// The content of a view, besides the design itself.
struct ViewedField {
    ViewChoice choice;
    std::vector<int> loadCases;  ///< in the view
    /// Of each element: the energy, or the von Mises stress as force / mm² at a thickness of 1 mm.
    std::optional<Field> values = {};
    std::optional<Deformation> deformation = {};
    double elementSize = 1;  ///< of the scene, in the stresses
};

/// Whether a view needs the displacements or stresses of an analysis.
inline bool needsStates(const ViewChoice& choice) {
    return choice.view == View::STRESS || choice.view == View::DEFORMED || choice.loadCase;
}

/// Numbers of the load cases in a view. A load case that is not in use counts as none.
std::vector<int> shownCases(const ViewChoice& choice, const Scene& scene);

/// The view of a design from its states in all load cases of the scene. Energies are the weighted
/// sum over the load cases, or those of the chosen load case without its weight; stresses are the
/// largest.
ViewedField viewOf(const ViewChoice& choice, const std::vector<PlateState>& states,
                   const Scene& scene);

/// Millimetres of the edge of an element in the analysis of a design so many elements wide. The
/// stresses of a state are for elements with an edge of 1; divide them by this.
inline double elementEdge(int designWidth, const Scene& scene) {
    return scene.elementSize / (designWidth / scene.width);
}

}  // namespace voxam::inline run
