#include "scene.h"

#include <algorithm>
#include <numeric>

#include "setting_keys.h"

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

void apply(const Change& change, Scene& scene) {
    for (const SettingKey& key : settingKeys())
        if (change.has(key.name)) key.copy(change.settings, scene);
    if (change.restart && !change.restart->keepsDesign) {
        scene.subdivision = change.restart->subdivision;
        scene.meshFactor = change.restart->meshFactor;
    }
}

std::vector<int> allLoadCases(const Scene& scene) {
    std::vector<int> cases(static_cast<std::size_t>(scene.loadCases));
    std::iota(cases.begin(), cases.end(), 0);
    return cases;
}
