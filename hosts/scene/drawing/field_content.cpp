#include "drawing/field_content.h"

#include <utility>

#include "format/text.h"

namespace voxam::inline drawing {

namespace {

std::string caseText(const ViewedField& seen, const std::vector<PlateState>& states,
                     const Scene& scene, const char* ofAll) {
    if (scene.loadCaseCount() == 1 || states.empty()) return "";
    const auto& cases = seen.loadCases;
    if (cases.size() == 1)
        return ",  " + loadCaseLabel(scene, cases.front()) +
               formatted(": compliance %.6g",
                         states[static_cast<std::size_t>(cases.front())].compliance);
    return std::string(",  ") + ofAll + " of " + counted(cases.size(), "load case");
}

}  // namespace

std::string showField(ViewedField seen, const std::vector<PlateState>& states, const Scene& scene,
                      PictureContent& content) {
    if (seen.choice.view == View::MATERIAL) return "";
    content.loadCases = seen.loadCases;
    content.energies = std::move(seen.values);
    content.deformation = std::move(seen.deformation);
    if (seen.choice.view == View::ENERGY)
        return caseText(seen, states, scene, hasWeights(scene) ? "weighted sum" : "sum");
    if (seen.choice.view == View::STRESS) {
        content.measure = STRESS_MEASURE;
        content.isAbsolute = true;
        return caseText(seen, states, scene, "largest");
    }
    return ",  deformation times " + plainNumber(content.deformation->magnification) +
           caseText(seen, states, scene, "");
}

}  // namespace voxam::inline drawing
