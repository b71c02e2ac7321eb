#include "format/timeline.h"

#include "format/setting_keys.h"

namespace voxam::inline format {

void apply(const Change& change, Scene& scene) {
    for (const SettingKey& key : settingKeys())
        if (change.has(key.name)) key.copy(change.settings, scene);
    if (change.restart && !change.restart->keepsDesign) {
        scene.subdivision = change.restart->subdivision;
        scene.meshFactor = change.restart->meshFactor;
    }
}

}  // namespace voxam::inline format
