#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "checks/assessment.h"
#include "checks/finding.h"
#include "format/area.h"
#include "format/field.h"
#include "format/scene.h"
#include "run/iteration_record.h"
#include "run/views.h"

/// The numbers of an iteration.
struct IterationNumbers : voxam::IterationRecord {
    std::uint64_t revision = 0;  ///< of the settings that it was computed with
};

/// A picture of the design.
struct Frame {
    voxam::Field material;            ///< empty before the first picture
    int refinement = 1;               ///< cells of the picture per edge of an element
    std::optional<voxam::Area> blob;  ///< the present place of a moving blob
    IterationNumbers numbers;
    bool isSettled = false;  ///< no iteration runs before the next edit
    /// It rests after many iterations, although the compliance still changes.
    bool hasGivenUp = false;
};

/// The text with which the library refused to iterate; empty if it did not.
struct LibraryText {
    std::string text;
    std::uint64_t revision = 0;
    int iteration = 0;  ///< the refused iteration
    /// The iteration of the change at which the run resumes by itself, if there is one.
    std::optional<int> resumesAt = std::nullopt;
};

/// A view of the analysis of a scored design. It may be large, so copies share it.
struct DesignView {
    std::shared_ptr<const std::vector<voxam::PlateState>>
        states;                                       ///< null unless the view needs them
    std::shared_ptr<const voxam::ViewedField> field;  ///< null for the material
};

/// The score of a design in black and white.
struct ScoreResult {
    std::uint64_t revision = 0;
    voxam::Field design;
    voxam::Assessment assessment;
    voxam::Findings warnings;  ///< about the optimiser's design
    bool isSettled = false;    ///< of the optimiser's design: no better one will come
    DesignView view = {};
    std::shared_ptr<const voxam::Scene> scene = nullptr;  ///< as it was when the design was scored
    std::uint64_t number = 0;                             ///< another one for each score

    bool isSupported() const { return assessment.problems.empty(); }
};

/// A view of a score that had been computed for another view, or the reason why it is missing.
struct ViewResult {
    std::uint64_t scoreNumber = 0;
    DesignView view;
    std::string problem = {};
};

/// Material of a design, in percent of all elements.
inline double materialOf(const voxam::Field& design) {
    return design.values.empty() ? 0 : 100 * mean(design);
}
