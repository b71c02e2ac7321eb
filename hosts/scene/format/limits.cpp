#include "format/limits.h"

#include <utility>

#include "format/input_error.h"
#include "format/text.h"

namespace voxam::inline format {

namespace {

template <typename Item>
std::string faultOfItems(const std::vector<Item>& items) {
    double nodes = 0;
    for (const Item& item : items) nodes += 1.0 * item.x.count() * item.y.count();
    if (nodes <= Scene::MAX_NODES) return "";
    return formatted("%.0f nodes in all, the limit is %.0f", nodes, Scene::MAX_NODES);
}

/// The key at fault and what is wrong with it, or an empty text.
std::string faultOfSettings(const Settings& settings) {
    const std::pair<const char*, std::string> faults[] = {
        {"loads", faultOfNodes(settings.loads)},
        {"supports", faultOfNodes(settings.supports)},
        {"passive.void", faultOfArea(settings.passive.voids)},
        {"passive.solid", faultOfArea(settings.passive.solids)},
        {"passive.secondSolid", faultOfArea(settings.passive.secondSolids)},
        {"blob", faultOfArea(settings.blob)}};
    for (const auto& [key, text] : faults)
        if (!text.empty()) return std::string(key) + ": " + text;
    return "";
}

}  // namespace

std::string faultOfTitle(const std::string& title) {
    if (characterCount(title) <= Scene::MAX_TITLE) return "";
    return "is longer than " + std::to_string(Scene::MAX_TITLE) + " characters";
}

std::string faultOfLoadCaseName(const std::string& name) {
    if (name.find_first_not_of(' ') == std::string::npos) return "is blank";
    if (onOneLine(name) != name) return "contains a line break or another control character";
    if (characterCount(name) <= Scene::MAX_LOAD_CASE_NAME) return "";
    return "is longer than " + std::to_string(Scene::MAX_LOAD_CASE_NAME) + " characters";
}

std::string faultOfNodes(const std::vector<Load>& loads) { return faultOfItems(loads); }

std::string faultOfNodes(const std::vector<Support>& supports) { return faultOfItems(supports); }

std::string faultOfArea(const Area& area) {
    if (area.cells.size() <= MAX_CELLS) return "";
    return std::to_string(area.cells.size()) + " elements, the limit is " +
           std::to_string(MAX_CELLS);
}

void checkLimits(const Scene& scene) {
    const auto check = [](const std::string& where, const std::string& fault) {
        if (!fault.empty()) throw InputError(where + fault);
    };
    check("the title ", faultOfTitle(scene.title));
    for (const LoadCase& loadCase : scene.loadCases)
        if (!loadCase.name.empty())
            check("the name of a load case ", faultOfLoadCaseName(loadCase.name));
    check("", faultOfSettings(scene));
    for (const Change& change : scene.timeline)
        check("from iteration " + std::to_string(change.iteration) + " on, ",
              faultOfSettings(change.settings));
}

}  // namespace voxam::inline format
