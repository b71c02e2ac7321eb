#include "match.h"

#include <algorithm>
#include <cmath>

using namespace voxam;

namespace {

constexpr double ROUNDING_OF_BUDGET = 1e-6;  // of a cell, because shares are rounded
constexpr double LEAST_DIFFERENCE = 0.02;    // of the cells; below, a drawing is a copy

bool hasGreys(const Field& design) {
    return std::any_of(design.values.begin(), design.values.end(),
                       [](float density) { return density > 0 && density < 1; });
}

bool areAlike(const Field& one, const Field& other) {
    if (one.width != other.width || one.height != other.height) return false;
    double different = 0;
    for (std::size_t i = 0; i < one.values.size(); ++i)
        if (one.values[i] != other.values[i]) ++different;
    return different < LEAST_DIFFERENCE * static_cast<double>(one.values.size());
}

}  // namespace

std::size_t cellsOver(const Field& design, double budget) {
    const auto cells = static_cast<double>(design.values.size());
    const double allowed = std::floor(budget * cells + ROUNDING_OF_BUDGET);
    return static_cast<std::size_t>(std::max(0L, std::lround(sum(design) - allowed)));
}

Match judge(const std::optional<ScoreResult>& drawing, const std::optional<ScoreResult>& rival,
            bool isRivalSettled, double budget) {
    if (!drawing) return {Match::State::NO_SCORE};
    if (mean(drawing->design) == 0) return {Match::State::EMPTY};
    if (!drawing->isSupported()) return {Match::State::UNSUPPORTED};
    if (cellsOver(drawing->design, budget) > 0) return {Match::State::OVER_BUDGET};
    if (hasGreys(drawing->design)) return {Match::State::GREY};
    if (!rival || !isRivalSettled) return {Match::State::RIVAL_AT_WORK};
    if (!rival->isSupported()) return {Match::State::RIVAL_FAILED};
    const double ratio = rival->assessment.score.compliance / drawing->assessment.score.compliance;
    constexpr double tenths = 1000;  // of a percent
    const double percent = std::round(tenths * ratio) / (tenths / 100);
    return {Match::State::DECIDED, percent, !rival->warnings.empty(),
            percent <= 100 && areAlike(drawing->design, rival->design)};
}
