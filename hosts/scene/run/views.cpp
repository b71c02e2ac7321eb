#include "run/views.h"

#include <algorithm>
#include <cmath>

namespace voxam::inline run {

namespace {

template <typename ValueAt>
Field fieldOf(const std::vector<PlateState>& states, ValueAt valueAt) {
    Field field(states.front().width, states.front().height);
    for (int x = 0; x < field.width; ++x)
        for (int y = 0; y < field.height; ++y) field.at(x, y) = static_cast<float>(valueAt(x, y));
    return field;
}

/// A load case that was chosen is shown without its weight.
Field energiesOf(const ViewedField& seen, const std::vector<PlateState>& states,
                 const Scene& scene) {
    const auto& cases = seen.loadCases;
    if (seen.choice.loadCase && cases == std::vector{*seen.choice.loadCase}) {
        const PlateState& state = states[static_cast<std::size_t>(cases.front())];
        return fieldOf(states, [&](int x, int y) { return state.energy(x, y); });
    }
    return fieldOf(states,
                   [&](int x, int y) { return weightedEnergy(states, scene, cases, x, y); });
}

Field stressesOf(const ViewedField& seen, const std::vector<PlateState>& states,
                 const Scene& scene) {
    const double edge = elementEdge(states.front().width, scene);
    return fieldOf(states, [&](int x, int y) {
        double most = 0;
        for (const int each : seen.loadCases)
            most = std::max(most,
                            states[static_cast<std::size_t>(each)].stress(x, y).vonMises() / edge);
        return most;
    });
}

/// The number with its first two digits, the others 0. Divides by whole powers of ten only: a
/// product with 0.0001 has digits of rounding.
double roundedDown(double number) {
    const double places = 1 - std::floor(std::log10(number));
    const double power = std::pow(10.0, std::abs(places));
    return places > 0 ? std::floor(number * power) / power : std::floor(number / power) * power;
}

/// Of nodes without material 0.
Deformation deformationOf(const PlateState& state, const Scene& scene) {
    // Whatever moves stays in sight: within the margin around the plate, or a tenth of its size.
    constexpr double share = 0.05;
    const double room = share * std::max(scene.width, scene.height);
    Deformation result{Field(state.width + 1, state.height + 1),
                       Field(state.width + 1, state.height + 1)};
    double largest = 0;
    for (int x = 0; x <= state.width; ++x)
        for (int y = 0; y <= state.height; ++y) {
            const double right = state.displacementX(x, y);
            const double down = state.displacementY(x, y);
            if (std::isnan(right) || std::isnan(down)) continue;
            result.right.at(x, y) = static_cast<float>(right);
            result.down.at(x, y) = static_cast<float>(down);
            largest = std::max({largest, std::abs(right), std::abs(down)});
        }
    result.magnification = largest > 0 ? roundedDown(room / largest) : 1;
    return result;
}

}  // namespace

std::vector<int> shownCases(const ViewChoice& choice, const Scene& scene) {
    const auto& used = scene.loadCasesInUse;
    const auto chosen =
        choice.loadCase ? std::find(used.begin(), used.end(), *choice.loadCase) : used.end();
    if (chosen != used.end()) return {*chosen};
    if (choice.view == View::DEFORMED && !used.empty()) return {used.front()};
    return used;
}

ViewedField viewOf(const ViewChoice& choice, const std::vector<PlateState>& states,
                   const Scene& scene) {
    ViewedField seen{choice, shownCases(choice, scene)};
    seen.elementSize = scene.elementSize;
    if (choice.view == View::ENERGY) seen.values = energiesOf(seen, states, scene);
    if (choice.view == View::STRESS) seen.values = stressesOf(seen, states, scene);
    if (choice.view == View::DEFORMED && !seen.loadCases.empty())
        seen.deformation =
            deformationOf(states[static_cast<std::size_t>(seen.loadCases.front())], scene);
    return seen;
}

}  // namespace voxam::inline run
