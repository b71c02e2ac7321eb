#include "verdict.h"

#include <chrono>
#include <cmath>

#include "format/refinement.h"
#include "format/text.h"

using namespace voxam;

namespace {

// Sound designs of the optimiser lose up to a quarter with their greys.
constexpr double MUCH_WORSE = 1.5;
constexpr double VOLUME_TOLERANCE = 0.03;

std::optional<DrawnVerdict> drawnVerdict(const Scene& scene) {
    const Field& design = *scene.densities;
    DrawnVerdict result{
        drawnDesign(design, scene, drawnRefinement(scene, refinementOf(design, scene))), {}};
    if (result.drawn.design == design) return std::nullopt;
    result.assessment = assess(result.drawn.design, scene);
    return result;
}

/// About the design as drawn.
Findings warningsAsDrawn(const Scene& scene, const Verdict& verdict) {
    const auto& [drawn, assessment] = *verdict.drawn;
    Findings warnings;
    const auto warn = [&warnings](const std::string& key, const std::string& text) {
        warnings.push_back({Finding::WARNING, key, "as drawn, " + text, std::nullopt});
    };
    for (const Finding& problem : assessment.problems) warn(problem.key, problem.text);
    const double ratio = assessment.score.compliance / verdict.found.score.compliance;
    if (assessment.problems.empty() && ratio > MUCH_WORSE)
        warn("compliance",
             formatted("it is %.3g times the compliance with greys; use a design with "
                       "fewer greys or a finer grid",
                       ratio));
    const double volume = mean(*scene.densities);
    if (std::abs(mean(drawn.design) - volume) > VOLUME_TOLERANCE)
        warn("design", formatted("it has %.1f %% of material instead of %.1f %%, because many of "
                                 "its greys are equal",
                                 100 * mean(drawn.design), 100 * volume));
    return warnings;
}

/// Of a design that is supported with its greys.
Findings warningsOf(const Scene& scene, const Verdict& verdict) {
    Findings warnings;
    if (!verdict.found.floating.empty())
        warnings.push_back({Finding::WARNING, "design",
                            describe(verdict.found.floating) + "; left out", std::nullopt});
    if (verdict.drawn)
        for (const Finding& warning : warningsAsDrawn(scene, verdict)) warnings.push_back(warning);
    return warnings;
}

}  // namespace

Verdict judge(const Scene& scene, bool withStates) {
    const auto begin = std::chrono::steady_clock::now();
    Verdict verdict{assess(*scene.densities, scene, withStates), drawnVerdict(scene), {}};
    verdict.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    if (verdict.found.problems.empty()) verdict.warnings = warningsOf(scene, verdict);
    return verdict;
}
