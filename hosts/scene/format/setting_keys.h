#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "format/json_value.h"
#include "format/scene.h"

namespace voxam::inline format {

/// A key that a scene and the changes of its timeline have in common, for one member of Settings.
struct SettingKey {
    const char* name;
    /// Reads the value into `target`. `scene` has the plate and the number of load cases already.
    void (*read)(const JsonValue& value, const Scene& scene, Settings& target);
    nlohmann::ordered_json (*write)(const Settings& settings, const Scene& scene);
    void (*copy)(const Settings& from, Settings& to);
    bool (*same)(const Settings& one, const Settings& other);
};

/// All keys, in the order in which the writer writes them.
const std::vector<SettingKey>& settingKeys();

}  // namespace voxam::inline format
