#pragma once

#include <optional>

#include "frame.h"

/// A drawing beside the optimiser's design, both for one budget of material.
struct Match {
    /// How the drawing stands.
    enum class State {
        NO_SCORE,     ///< the drawing has none yet
        EMPTY,        ///< nothing is drawn yet
        UNSUPPORTED,  ///< the drawing does not hold
        OVER_BUDGET,  ///< no verdict: it has more material than is allowed
        RIVAL_AT_WORK,
        RIVAL_FAILED,  ///< the optimiser's design does not hold as drawn
        DECIDED
    };

    State state = State::NO_SCORE;
    double percent = 0;  ///< stiffness of the drawing in percent of the optimiser's; when decided
};

/// Material that counts, as a share of the plate: without what hangs on nothing.
double carriedShare(const ScoreResult& result);

/// `budget` is the share of the plate that both may fill. There is no verdict before the
/// optimiser's design has settled.
Match judge(const std::optional<ScoreResult>& drawing, const std::optional<ScoreResult>& rival,
            bool isRivalSettled, double budget);
