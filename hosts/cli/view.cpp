#include "view.h"

#include <algorithm>
#include <map>
#include <utility>

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

std::string caseText(const std::vector<int>& cases, const Assessment& found, const Scene& scene,
                     const char* ofAll) {
    if (scene.loadCases == 1) return "";
    if (cases.size() == 1)
        return formatted(",  load case %d: compliance %.6g", cases.front(),
                         found.states[static_cast<std::size_t>(cases.front())].compliance);
    return std::string(",  ") + ofAll + " of " + counted(cases.size(), "load case");
}

}  // namespace

bool needsStates(const ViewOptions& options) { return needsStates(choiceOf(options)); }

void checkView(const ViewOptions& options, const Scene& scene) {
    if (!options.loadCase) return;
    const auto& cases = scene.loadCasesInUse;
    if (std::find(cases.begin(), cases.end(), *options.loadCase) != cases.end()) return;
    std::vector<std::string> numbers;
    for (const int each : cases) numbers.push_back(std::to_string(each));
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
    ViewedField seen = viewOf(choiceOf(options), found.states, scene);
    const auto& cases = seen.loadCases;
    content.loadCases = cases;
    content.energies = std::move(seen.values);
    content.deformation = std::move(seen.deformation);
    if (options.view == "energy") return caseText(cases, found, scene, "sum");
    if (options.view == "stress") {
        content.measure = STRESS_MEASURE;
        content.isAbsolute = true;
        return caseText(cases, found, scene, "largest");
    }
    return ",  deformation times " + plainNumber(content.deformation->magnification) +
           caseText(cases, found, scene, "");
}
