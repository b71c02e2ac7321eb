#include "match.h"

#include <algorithm>
#include <cmath>

using namespace voxam;

namespace {

constexpr double ROUNDING_OF_BUDGET = 1e-6;  // of a cell, because shares are rounded
constexpr double ROUNDING_OF_RATIO = 1e-9;   // equally stiff designs may differ by as much

bool hasGreys(const Field& design) {
    return std::any_of(design.values.begin(), design.values.end(),
                       [](float density) { return density > 0 && density < 1; });
}

}  // namespace

std::size_t cellsOver(const Field& design, double budget) {
    const auto cells = static_cast<double>(design.values.size());
    const double allowed = std::floor(budget * cells + ROUNDING_OF_BUDGET);
    return static_cast<std::size_t>(std::max(0L, std::lround(sum(design) - allowed)));
}

Match judge(const std::optional<ScoreResult>& drawing, const Rival& rival, double budget) {
    if (!drawing) return {Match::State::NO_SCORE};
    if (mean(drawing->design) == 0) return {Match::State::EMPTY};
    if (!drawing->isSupported()) return {Match::State::UNSUPPORTED};
    if (cellsOver(drawing->design, budget) > 0) return {Match::State::OVER_BUDGET};
    if (hasGreys(drawing->design)) return {Match::State::GREY};
    return judge(drawing->assessment.score.compliance, rival);
}

Match judge(double compliance, const Rival& rival) {
    if (rival.isTorn) return {Match::State::RIVAL_FAILED};
    if (rival.score == nullptr || !rival.isSettled) return {Match::State::RIVAL_AT_WORK};
    if (!rival.score->isSupported()) return {Match::State::RIVAL_FAILED};
    const double present = rival.score->assessment.score.compliance;
    const bool isEarlier =
        rival.bestCompliance > 0 && rival.bestCompliance < present * (1 - ROUNDING_OF_RATIO);
    const double ratio = (isEarlier ? rival.bestCompliance : present) / compliance;
    const double percent = std::abs(ratio - 1) < ROUNDING_OF_RATIO ? 100 : 100 * ratio;
    return {Match::State::DECIDED, percent, !rival.score->warnings.empty(), isEarlier};
}
