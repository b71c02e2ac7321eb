#pragma once

#include <optional>

#include "frame.h"

/// A drawing compared with the optimiser's design, for the same budget of material.
struct Match {
    enum class State {
        NO_SCORE,     ///< the drawing has no score yet
        EMPTY,        ///< nothing is drawn yet
        UNSUPPORTED,  ///< the supports do not hold the drawing
        OVER_BUDGET,  ///< no verdict: it has more material than is allowed
        RIVAL_AT_WORK,
        RIVAL_FAILED,  ///< the supports do not hold the optimiser's design as drawn
        DECIDED
    };

    State state = State::NO_SCORE;
    double percent = 0;  ///< stiffness of the drawing in percent of the optimiser's; when decided
};

/// Material that counts, as a share of the plate: without floating parts.
double carriedShare(const ScoreResult& result);

/// `budget` is the share of the plate that both may fill. There is no verdict before the
/// optimiser's design has settled.
Match judge(const std::optional<ScoreResult>& drawing, const std::optional<ScoreResult>& rival,
            bool isRivalSettled, double budget);
