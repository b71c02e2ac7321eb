#pragma once

#include <cstddef>
#include <optional>

#include "frame.h"

/// A drawing compared with the optimiser's design, for the same budget of material.
struct Match {
    enum class State {
        NO_SCORE,     ///< the drawing has no score yet
        EMPTY,        ///< nothing is drawn yet
        UNSUPPORTED,  ///< the supports do not hold the drawing
        OVER_BUDGET,  ///< no verdict: it has more material than is allowed
        GREY,         ///< no verdict: densities between void and solid
        RIVAL_AT_WORK,
        RIVAL_FAILED,  ///< the supports do not hold the optimiser's design as drawn
        DECIDED
    };

    State state = State::NO_SCORE;
    double percent = 0;  ///< stiffness of the drawing in percent of the optimiser's, rounded to one
                         ///< decimal; when decided
    bool isRivalDoubtful = false;  ///< the optimiser's design has warnings
    bool isAlike = false;          ///< nearly the optimiser's design, and no stiffer
};

/// The number of cells by which a design exceeds `budget`, a share of the plate. The budget allows
/// whole cells only, for the optimiser's design as well.
std::size_t cellsOver(const voxam::Field& design, double budget);

/// `budget` is the share of the plate that both designs may fill, including their loose parts.
/// There is no verdict before the optimiser's design has settled.
Match judge(const std::optional<ScoreResult>& drawing, const std::optional<ScoreResult>& rival,
            bool isRivalSettled, double budget);
