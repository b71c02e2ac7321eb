#pragma once

#include <QString>
#include <memory>
#include <optional>

#include "format/scene.h"
#include "frame.h"

using namespace voxam;

/// A design that the user has kept, with the scene that it belongs to.
struct Variant {
    QString name;
    std::shared_ptr<const voxam::Scene> whole;  ///< as it is saved
    std::size_t changesMade = 0;                ///< of its timeline
    std::shared_ptr<const voxam::Scene> seen;   ///< with these changes, and the blob where it was
    voxam::Field material;                      ///< as it was seen
    std::shared_ptr<const voxam::Field> drawn;  ///< the scored design, in black and white
    std::uint64_t revision = 0;                 ///< of the settings that it was kept with
    bool isDrawn = false;                       ///< by hand, or imported
    std::optional<ScoreResult> score;           ///< empty while it is computed

    /// Empty if there is no score, or if the design does not hold.
    std::optional<double> compliance() const;
    /// Share of the plate, as drawn.
    double share() const;
    /// Sets `drawn` from `seen`, `material` and `isDrawn`.
    void findDrawn();
};

/// Whether the compliances of two variants answer the same question: the same plate, loads,
/// supports and load cases in use.
bool haveSameTask(const Variant& one, const Variant& other);

/// The numbers of a variant, a line each: compliance as drawn and material.
QString numbersOf(const Variant& variant);

/// By how much the second variant is stiffer, and how much more material it has, as a sentence.
QString comparisonOf(const Variant& one, const Variant& other);
