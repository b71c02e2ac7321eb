#include "format/scene_writer.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "format/area_writer.h"
#include "format/setting_keys.h"
#include "format/text.h"

namespace voxam::inline format {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t LINE_LENGTH = 100;
constexpr std::size_t INDENT = 4;

/// A value on one line, with a blank behind commas and colons.
std::string onOneLineOf(const Json& value) {
    if (!value.is_structured()) return value.dump();
    std::string text;
    for (const auto& [key, item] : value.items()) {
        if (!text.empty()) text += ", ";
        if (value.is_object()) text += Json(key).dump() + ": ";
        text += onOneLineOf(item);
    }
    return value.is_object() ? "{" + text + "}" : "[" + text + "]";
}

/// A value that ends on a line of its own where it does not fit the rest of one.
std::string layout(const Json& value, std::size_t indent, std::size_t column) {
    const std::string line = onOneLineOf(value);
    const bool isDocument = column == 0;
    if (!value.is_structured() || (!isDocument && column + line.size() < LINE_LENGTH)) return line;
    const std::string margin(indent + INDENT, ' ');
    std::string text;
    for (const auto& [key, item] : value.items()) {
        const std::string name = value.is_object() ? Json(key).dump() + ": " : "";
        text += (text.empty() ? "\n" : ",\n") + margin + name +
                layout(item, indent + INDENT, margin.size() + name.size());
    }
    text += "\n" + std::string(indent, ' ');
    return value.is_object() ? "{" + text + "}" : "[" + text + "]";
}

/// The character that reads as this density, or 0.
char characterOf(float density) {
    if (density == 0) return '.';
    if (density == 1) return '#';
    const long tenths = std::lround(10 * density);
    return density == static_cast<float>(tenths) / 10.0f ? static_cast<char>('0' + tenths) : '\0';
}

Json characterRow(const Field& densities, int y) {
    std::string row;
    for (int x = 0; x < densities.width; ++x) row += characterOf(densities.at(x, y));
    return row;
}

Json numberRow(const Field& densities, int y) {
    Json row = Json::array();
    for (int x = 0; x < densities.width; ++x) row.push_back(writeNumber(densities.at(x, y)));
    return row;
}

Json writeDensities(const Field& densities) {
    const bool drawable = std::all_of(densities.values.begin(), densities.values.end(),
                                      [](float density) { return characterOf(density) != '\0'; });
    Json rows = Json::array();
    for (int y = 0; y < densities.height; ++y)
        rows.push_back(drawable ? characterRow(densities, y) : numberRow(densities, y));
    return rows;
}

Json writeRestart(const Restart& restart) {
    if (restart.keepsDesign) return {{"design", "keep"}};
    Json value = {{"design", "new"}};
    if (restart.subdivision != 1) value["subdivision"] = restart.subdivision;
    if (restart.meshFactor != 1) value["meshFactor"] = restart.meshFactor;
    return value;
}

Json writeChange(const Change& change, const Scene& scene) {
    Json value = {{"iteration", change.iteration}};
    for (const SettingKey& key : settingKeys())
        if (change.has(key.name)) value[key.name] = key.write(change.settings, scene);
    if (change.restart) value["restart"] = writeRestart(*change.restart);
    return value;
}

Json writeLoadCases(const Scene& scene) {
    if (hasPlainLoadCases(scene)) return scene.loadCases.size();
    Json list = Json::array();
    for (const LoadCase& loadCase : scene.loadCases) {
        Json item = Json::object();
        if (!loadCase.name.empty()) item["name"] = loadCase.name;
        if (loadCase.weight != 1) item["weight"] = writeNumber(loadCase.weight);
        list.push_back(item);
    }
    return list;
}

void writePlate(const Scene& scene, Json& root) {
    // A title that is the file's name is none: under another name it would be wrong.
    const bool isOfFile = !scene.files.empty() && scene.title == nameOf(scene.files.front().stem());
    if (!isOfFile) root["title"] = scene.title;
    if (!scene.description.empty()) root["description"] = scene.description;
    root["grid"] = {{"width", scene.width}, {"height", scene.height}};
    if (scene.symmetry != Symmetry::NONE)
        root["symmetry"] = SYMMETRY_NAMES[static_cast<std::size_t>(scene.symmetry)];
    if (scene.elementSize != 1) root["elementSize"] = writeNumber(scene.elementSize);
    const auto add = [&](const char* key, int value, int otherwise) {
        if (value != otherwise) root[key] = value;
    };
    const Scene defaults;
    add("subdivision", scene.subdivision, defaults.subdivision);
    add("meshFactor", scene.meshFactor, defaults.meshFactor);
    add("iterations", scene.iterations, defaults.iterations);
    if (scene.loadCases != defaults.loadCases) root["loadCases"] = writeLoadCases(scene);
}

void writeSettings(const Scene& scene, Json& root) {
    Settings defaults;
    defaults.loadCasesInUse = allLoadCases(scene);
    for (const SettingKey& key : settingKeys()) {
        const std::string name = key.name;
        const bool required = name == "loads" || name == "supports";
        if (required || !key.same(scene, defaults)) root[name] = key.write(scene, scene);
    }
}

}  // namespace

std::string sceneText(const Scene& scene) {
    Json root = Json::object();
    writePlate(scene, root);
    writeSettings(scene, root);
    if (scene.densities) root["densities"] = writeDensities(*scene.densities);
    for (const Change& change : scene.timeline)
        root["timeline"].push_back(writeChange(change, scene));
    return layout(root, 0, 0) + "\n";
}

}  // namespace voxam::inline format
