#include "format/scene.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace voxam::inline format {

const std::vector<std::string> SYMMETRY_NAMES = {"", "left", "right", "top", "bottom"};

bool Change::has(const std::string& key) const {
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

bool Change::concernsProblem() const {
    return std::any_of(keys.begin(), keys.end(),
                       [](const std::string& key) { return key != "penalty"; });
}

std::string Change::summary() const {
    std::string text;
    for (const auto& key : keys) text += (text.empty() ? "" : ", ") + key;
    if (restart) text += text.empty() ? "restart" : ", restart";
    return text;
}

bool hasSameProblem(const Scene& one, const Scene& other) {
    const auto sizes = [](const Scene& scene) {
        return std::tuple(scene.width, scene.height, scene.subdivision, scene.meshFactor);
    };
    return sizes(one) == sizes(other) && weightsOf(one) == weightsOf(other) &&
           one.timeline == other.timeline &&
           static_cast<const Settings&>(one) == static_cast<const Settings&>(other);
}

std::vector<int> allLoadCases(const Scene& scene) {
    std::vector<int> cases(scene.loadCases.size());
    std::iota(cases.begin(), cases.end(), 0);
    return cases;
}

std::vector<double> weightsOf(const Scene& scene) {
    std::vector<double> weights;
    for (const LoadCase& loadCase : scene.loadCases) weights.push_back(loadCase.weight);
    return weights;
}

bool hasWeights(const Scene& scene) {
    return std::any_of(scene.loadCases.begin(), scene.loadCases.end(),
                       [](const LoadCase& each) { return each.weight != 1; });
}

bool hasPlainLoadCases(const Scene& scene) {
    return std::all_of(scene.loadCases.begin(), scene.loadCases.end(),
                       [](const LoadCase& each) { return each == LoadCase{}; });
}

std::string loadCaseLabel(const Scene& scene, int loadCase) {
    const std::string& name = scene.loadCases[static_cast<std::size_t>(loadCase)].name;
    return name.empty() ? "load case " + std::to_string(loadCase) : name;
}

std::string numberedLoadCase(const Scene& scene, int loadCase) {
    const std::string& name = scene.loadCases[static_cast<std::size_t>(loadCase)].name;
    return std::to_string(loadCase) + (name.empty() ? "" : " (" + name + ")");
}

}  // namespace voxam::inline format
