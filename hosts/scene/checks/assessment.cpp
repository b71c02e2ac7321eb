#include "checks/assessment.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <tuple>

#include "checks/plate_checks.h"
#include "format/refinement.h"

namespace voxam::inline checks {

namespace {

Finding error(const char* key, const char* text) {
    return {Finding::ERROR, key, text, std::nullopt};
}

bool isEmpty(const Field& design) {
    return std::all_of(design.values.begin(), design.values.end(),
                       [](float density) { return density <= 0; });
}

Findings whyNotScored(const Field& design, const Assessment& found, Analysis::Outcome outcome,
                      const Scene& scene) {
    if (isEmpty(design)) return {error("design", "there is no material")};
    if (outcome == Analysis::NOT_SUPPORTED) {
        const Findings loose = findLooseLoads(design, found.floating, scene);
        return loose.empty() ? Findings{error("loads", "act where nothing holds them")} : loose;
    }
    if (outcome == Analysis::NOT_ACCURATE)
        return {error("design",
                      "its densities differ too much for an accurate analysis; make the faintest "
                      "void")};
    return {};
}

Score scoreOf(const std::vector<PlateState>& states, const Scene& scene) {
    const std::vector<int> cases = allLoadCases(scene);
    const int width = states.front().width;
    const int height = states.front().height;
    Score score{true, weightedCompliance(states, scene, cases), Field(width, height)};
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y)
            score.energies.at(x, y) =
                static_cast<float>(weightedEnergy(states, scene, cases, x, y));
    return score;
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

/// The same material in coarser cells.
Field averaged(const Field& material, int width, int height) {
    if (material.width == width) return material;
    Field result(width, height);
    const double shrink = 1.0 * material.width / width;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const Cover across = cover(x, shrink, material.width);
            const Cover down = cover(y, shrink, material.height);
            double sum = 0;
            for (int j = down.first; j <= down.last; ++j)
                for (int i = across.first; i <= across.last; ++i)
                    sum +=
                        material.at(i, j) * across.weight(i, shrink, x) * down.weight(j, shrink, y);
            result.at(x, y) = static_cast<float>(sum / (shrink * shrink));
        }
    return result;
}

/// The level at which as many cells are solid as the material would fill.
double levelKeepingVolume(const Field& material) {
    // Cells that differ by rounding, such as those of a symmetric design, stay together.
    constexpr float rounding = 1e-4f;
    constexpr double half = 0.5;
    std::vector<float> sorted = material.values;
    std::sort(sorted.begin(), sorted.end(), std::greater<>());
    const double volume = mean(material) * static_cast<double>(sorted.size());
    const auto count = static_cast<std::size_t>(std::llround(volume));
    if (count == 0 || count >= sorted.size()) return half;
    const auto first = sorted.begin();
    const auto end = sorted.end();
    const float last = sorted[count - 1];
    const auto alikeFrom = std::lower_bound(first, end, last + rounding, std::greater<>());
    const auto alikeTo = std::lower_bound(first, end, last - rounding, std::greater<>());
    const bool includesThem = std::abs(static_cast<double>(alikeTo - first) - volume) <=
                              std::abs(static_cast<double>(alikeFrom - first) - volume);
    const auto cut = includesThem ? alikeTo : alikeFrom;
    const double above = cut == first ? 1 : double(*(cut - 1));
    const double below = cut == end ? 0 : double(*cut);
    return (above + below) / 2;
}

/// Mean density of a cell and the eight around it; there is nothing beyond the border.
Field neighbourhoods(const Field& material) {
    constexpr float cells = 9;
    Field result(material.width, material.height);
    for (int y = 0; y < material.height; ++y)
        for (int x = 0; x < material.width; ++x) {
            float sum = 0;
            for (int j = std::max(0, y - 1); j <= std::min(y + 1, material.height - 1); ++j)
                for (int i = std::max(0, x - 1); i <= std::min(x + 1, material.width - 1); ++i)
                    sum += material.at(i, j);
            result.at(x, y) = sum / cells;
        }
    return result;
}

/// Makes the `count` densest cells solid and all others void; of cells that are equally dense,
/// those with the denser neighbours.
void keepDensest(std::size_t count, DrawnDesign& drawn) {
    Field& design = drawn.design;
    const Field around = neighbourhoods(design);
    std::vector<std::size_t> order(design.values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t one, std::size_t other) {
        return std::tuple(-design.values[one], -around.values[one], one) <
               std::tuple(-design.values[other], -around.values[other], other);
    });
    if (count > 0) drawn.level = double(design.values[order[count - 1]]);
    for (std::size_t i = 0; i < order.size(); ++i) design.values[order[i]] = i < count ? 1.f : 0.f;
}

}  // namespace

Assessment assess(const Field& design, const Scene& scene, bool withStates) {
    Assessment result;
    result.score.energies = Field(design.width, design.height);
    result.problems = findFreePlate(scene);
    if (!result.problems.empty()) return result;
    const int refinement = refinementOf(design, scene);
    Analysis analysis = analyse(design, refined(scene, refinement), withStates);
    result.floating = floatingParts(analysis.loose, refinement);
    result.problems = whyNotScored(design, result, analysis.outcome, scene);
    if (!result.problems.empty()) return result;
    result.score = scoreOf(analysis.states, scene);
    if (withStates) result.states = std::move(analysis.states);
    return result;
}

int drawnRefinement(const Scene& scene, int refinement) {
    const auto elements = [&] {
        return 1.0 * scene.width * scene.height * refinement * refinement;
    };
    while (refinement > 1 && elements() > MAX_DRAWN_ELEMENTS) --refinement;
    return refinement;
}

DrawnDesign drawnDesign(const Field& material, const Scene& scene, int refinement) {
    DrawnDesign drawn{averaged(material, refinement * scene.width, refinement * scene.height)};
    drawn.level = levelKeepingVolume(drawn.design);
    for (float& density : drawn.design.values) density = double(density) >= drawn.level ? 1.f : 0.f;
    return drawn;
}

DrawnDesign drawnDesign(const Field& material, const Scene& scene, int refinement, double share) {
    DrawnDesign drawn{averaged(material, refinement * scene.width, refinement * scene.height)};
    constexpr double slack = 1e-6;  // of a cell: a share may be a rounded one
    const auto cells = static_cast<double>(drawn.design.values.size());
    keepDensest(static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * cells + slack), drawn);
    return drawn;
}

}  // namespace voxam::inline checks
