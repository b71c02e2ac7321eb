#pragma once

#include <cstddef>
#include <optional>

#include "frame.h"

/// The optimiser's design for the same task.
struct Rival {
    const ScoreResult* score = nullptr;  ///< of the present run; null before the first
    bool isSettled = false;
    bool isTorn = false;        ///< the run cannot go on: its design has torn
    double bestCompliance = 0;  ///< of earlier runs that have settled; 0 without one
};

/// A drawing compared with the optimiser's design, for the same budget of material.
struct Match {
    enum class State {
        NO_SCORE,     ///< the drawing has no score yet
        EMPTY,        ///< nothing is drawn yet
        UNSUPPORTED,  ///< the supports do not hold the drawing
        OVER_BUDGET,  ///< no verdict: it has more material than is allowed
        GREY,         ///< no verdict: densities between void and solid
        RIVAL_AT_WORK,
        RIVAL_FAILED,  ///< the drawing holds, but not the optimiser's design as drawn
        DECIDED
    };

    State state = State::NO_SCORE;
    double percent = 0;            ///< stiffness of the drawing in percent of the optimiser's best
                                   ///< design, not rounded; when decided
    bool isRivalDoubtful = false;  ///< the optimiser's design has warnings
    bool isRivalEarlier = false;   ///< the optimiser's best design is of an earlier run
};

/// The number of cells by which a design exceeds `budget`, a share of the plate. The budget allows
/// whole cells only, for the optimiser's design as well.
std::size_t cellsOver(const voxam::Field& design, double budget);

/// `budget` is the share of the plate that both designs may fill, including their loose parts.
/// There is no verdict before the optimiser's design has settled. Then the best of the optimiser's
/// designs counts.
Match judge(const std::optional<ScoreResult>& drawing, const Rival& rival, double budget);
/// The same for a drawing within the budget of which only the compliance is known.
Match judge(double compliance, const Rival& rival);
