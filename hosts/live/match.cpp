#include "match.h"

namespace {

// Half a cell: a budget is met by whole ones.
constexpr double SLACK_IN_CELLS = 0.5;

}  // namespace

double carriedShare(const ScoreResult& result) {
    return mean(without(result.design, result.assessment.floating));
}

Match judge(const std::optional<ScoreResult>& drawing, const std::optional<ScoreResult>& rival,
            bool isRivalSettled, double budget) {
    if (!drawing) return {Match::State::NO_SCORE};
    if (mean(drawing->design) == 0) return {Match::State::EMPTY};
    if (!drawing->isSupported()) return {Match::State::UNSUPPORTED};
    const auto cells = static_cast<double>(drawing->design.values.size());
    if (carriedShare(*drawing) > budget + SLACK_IN_CELLS / cells)
        return {Match::State::OVER_BUDGET};
    if (!rival || !isRivalSettled) return {Match::State::RIVAL_AT_WORK};
    if (!rival->isSupported()) return {Match::State::RIVAL_FAILED};
    return {Match::State::DECIDED,
            100 * rival->assessment.score.compliance / drawing->assessment.score.compliance};
}
