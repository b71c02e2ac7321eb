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
        return std::tuple(scene.width, scene.height, scene.subdivision, scene.meshFactor,
                          scene.loadCases);
    };
    return sizes(one) == sizes(other) && one.timeline == other.timeline &&
           static_cast<const Settings&>(one) == static_cast<const Settings&>(other);
}

std::vector<int> allLoadCases(const Scene& scene) {
    std::vector<int> cases(static_cast<std::size_t>(scene.loadCases));
    std::iota(cases.begin(), cases.end(), 0);
    return cases;
}

}  // namespace voxam::inline format
