#include "checks/assessment.h"

#include <algorithm>

#include "checks/free_plate.h"
#include "format/refinement.h"
#include "format/text.h"

namespace {

Findings whyNotScored(const Field& design, const Assessment& found, const Scene& scene) {
    Findings problems = findFreePlate(scene);
    if (!problems.empty()) return problems;
    if (found.floating.empty()) {
        const bool empty = std::all_of(design.values.begin(), design.values.end(),
                                       [](float density) { return density <= 0; });
        if (empty) return {{Finding::ERROR, "design", "there is no material", std::nullopt}};
    }
    return findLooseLoads(design, found.floating, scene);
}

/// Overlap of the pixels that a coarse pixel of a line covers, `shrink` fine ones wide.
struct Cover {
    int first;
    int last;
    double weight(int fine, double shrink, int coarse) const {
        return std::min(fine + 1.0, (coarse + 1) * shrink) - std::max(1.0 * fine, coarse * shrink);
    }
};

Cover cover(int coarse, double shrink, int fineCount) {
    constexpr double slack = 1e-9;
    return {int(coarse * shrink + slack),
            std::min(fineCount - 1, int((coarse + 1) * shrink - slack))};
}

}  // namespace

Assessment assess(const Field& design, const Scene& scene) {
    Assessment result;
    result.floating = findFloatingParts(design, scene);
    result.problems = whyNotScored(design, result, scene);
    result.score.energies = Field(design.width, design.height);
    if (!result.problems.empty()) return result;
    const Scene plate = refined(scene, refinementOf(design, scene));
    result.score = Game(plate).score(without(design, result.floating));
    if (result.score.supported) return result;
    result.isBeyondPrecision = true;
    result.problems.push_back(
        {Finding::ERROR, "design",
         formatted("on %d x %d elements parts of it are too slender for the library's precision",
                   design.width, design.height),
         std::nullopt});
    return result;
}

int drawnRefinement(const Scene& scene, int refinement) {
    const auto elements = [&] {
        return 1.0 * scene.width * scene.height * refinement * refinement;
    };
    while (refinement > 1 && elements() > MAX_DRAWN_ELEMENTS) --refinement;
    return refinement;
}

Field drawnDesign(const Field& material, const Scene& scene, int refinement) {
    constexpr double half = 0.5;
    Field design(refinement * scene.width, refinement * scene.height);
    const double shrink = 1.0 * material.width / design.width;
    for (int y = 0; y < design.height; ++y)
        for (int x = 0; x < design.width; ++x) {
            const Cover across = cover(x, shrink, material.width);
            const Cover down = cover(y, shrink, material.height);
            double sum = 0;
            for (int j = down.first; j <= down.last; ++j)
                for (int i = across.first; i <= across.last; ++i)
                    sum +=
                        material.at(i, j) * across.weight(i, shrink, x) * down.weight(j, shrink, y);
            design.at(x, y) = sum >= half * shrink * shrink ? 1.0f : 0.0f;
        }
    return design;
}
