#include "view.h"

#include <algorithm>
#include <map>

#include "drawing/field_content.h"
#include "format/input_error.h"
#include "format/text.h"
#include "run/views.h"

using namespace voxam;

namespace {

ViewChoice choiceOf(const ViewOptions& options) {
    static const std::map<std::string, View> views = {{"material", View::MATERIAL},
                                                      {"energy", View::ENERGY},
                                                      {"stress", View::STRESS},
                                                      {"deformed", View::DEFORMED}};
    return {views.at(options.view), options.loadCase};
}

}  // namespace

bool needsStates(const ViewOptions& options) { return needsStates(choiceOf(options)); }

void checkView(const ViewOptions& options, const Scene& scene) {
    if (!options.loadCase) return;
    const auto& cases = scene.loadCasesInUse;
    if (std::find(cases.begin(), cases.end(), *options.loadCase) != cases.end()) return;
    std::vector<std::string> numbers;
    for (const int each : cases) numbers.push_back(numberedLoadCase(scene, each));
    throw InputError("--load-case: " + std::to_string(*options.loadCase) +
                     " is not in use; in use: " + listed(numbers));
}

std::string showView(const ViewOptions& options, const Assessment& found, const Scene& scene,
                     PictureContent& content) {
    if (!found.problems.empty() || options.view == "material") return "";
    if (options.view == "energy" && found.states.empty()) {
        content.energies = found.score.energies;
        return "";
    }
    return showField(viewOf(choiceOf(options), found.states, scene), found.states, scene, content);
}
