#include "format/setting_keys.h"

#include <set>
#include <string>

#include "format/area_reader.h"
#include "format/area_writer.h"
#include "format/limits.h"
#include "format/text.h"

namespace voxam::inline format {

namespace {

using Json = nlohmann::ordered_json;

Range readNodes(const JsonValue& value, int last) {
    return value.range(last, " (nodes of the grid)");
}

double readForce(const JsonValue& load, const char* key) {
    const auto force = load.find(key);
    return force ? force->number(-Scene::MAX_FORCE, Scene::MAX_FORCE) : 0.0;
}

int readLoadCase(const JsonValue& value, const Scene& scene) {
    return value.integer(0, scene.loadCaseCount() - 1,
                         " (the scene has " + counted(scene.loadCases.size(), "load case") + ")");
}

Load readLoad(const JsonValue& value, const Scene& scene) {
    value.allowOnly({"x", "y", "fx", "fy", "loadCase"});
    if (!value.find("fx") && !value.find("fy")) value.fail("needs a force: fx, fy or both");
    Load load;
    load.x = readNodes(value.at("x"), scene.width);
    load.y = readNodes(value.at("y"), scene.height);
    load.fx = readForce(value, "fx");
    load.fy = readForce(value, "fy");
    if (const auto loadCase = value.find("loadCase"))
        load.loadCase = readLoadCase(*loadCase, scene);
    return load;
}

std::vector<Load> readLoads(const JsonValue& value, const Scene& scene) {
    std::vector<Load> loads;
    for (const auto& load : value.elements("a list of loads in brackets []"))
        loads.push_back(readLoad(load, scene));
    if (loads.empty()) value.fail("needs at least one load");
    value.failIf(faultOfNodes(loads));
    return loads;
}

Json writeLoads(const std::vector<Load>& loads, const Scene&) {
    Json list = Json::array();
    for (const Load& load : loads) {
        Json item = {{"x", writeRange(load.x)}, {"y", writeRange(load.y)}};
        if (load.fx != 0) item["fx"] = writeNumber(load.fx);
        if (load.fy != 0 || load.fx == 0) item["fy"] = writeNumber(load.fy);
        if (load.loadCase != 0) item["loadCase"] = load.loadCase;
        list.push_back(item);
    }
    return list;
}

Support readSupport(const JsonValue& value, const Scene& scene) {
    value.allowOnly({"x", "y", "fix"});
    Support support;
    support.x = readNodes(value.at("x"), scene.width);
    support.y = readNodes(value.at("y"), scene.height);
    const std::string directions = value.at("fix").oneOf({"x", "y", "xy"});
    support.fixX = directions != "y";
    support.fixY = directions != "x";
    return support;
}

std::vector<Support> readSupports(const JsonValue& value, const Scene& scene) {
    std::vector<Support> supports;
    for (const auto& support : value.elements("a list of supports in brackets []"))
        supports.push_back(readSupport(support, scene));
    value.failIf(faultOfNodes(supports));
    return supports;
}

Json writeSupports(const std::vector<Support>& supports, const Scene&) {
    Json list = Json::array();
    for (const Support& support : supports) {
        const char* directions = support.fixX && support.fixY ? "xy" : support.fixX ? "x" : "y";
        list.push_back(
            {{"x", writeRange(support.x)}, {"y", writeRange(support.y)}, {"fix", directions}});
    }
    return list;
}

double readVolumeFraction(const JsonValue& value, const Scene&) {
    return value.number(Scene::MIN_VOLUME_FRACTION, 1);
}

double readPenalty(const JsonValue& value, const Scene&) {
    return value.number(1, Scene::MAX_PENALTY);
}

Json writeDouble(double value, const Scene&) { return writeNumber(value); }

PassiveAreas readPassive(const JsonValue& value, const Scene& scene) {
    return readPassiveAreas(value, scene.width, scene.height);
}

Json writePassive(const PassiveAreas& passive, const Scene& scene) {
    return writePassiveAreas(passive, scene.width, scene.height);
}

Area readBlob(const JsonValue& value, const Scene& scene) {
    return readArea(value, scene.width, scene.height);
}

Json writeBlob(const Area& blob, const Scene& scene) {
    return writeArea(blob, scene.width, scene.height);
}

std::vector<int> readLoadCasesInUse(const JsonValue& value, const Scene& scene) {
    std::set<int> cases;
    for (const auto& loadCase : value.elements("a list of load cases in brackets []"))
        cases.insert(readLoadCase(loadCase, scene));
    if (cases.empty()) value.fail("needs at least one load case");
    return {cases.begin(), cases.end()};
}

Json writeLoadCasesInUse(const std::vector<int>& cases, const Scene&) { return cases; }

template <auto MEMBER, auto READ, auto WRITE>
SettingKey key(const char* name) {
    return {
        name,
        [](const JsonValue& value, const Scene& scene, Settings& target) {
            target.*MEMBER = READ(value, scene);
        },
        [](const Settings& settings, const Scene& scene) -> Json {
            return WRITE(settings.*MEMBER, scene);
        },
        [](const Settings& from, Settings& to) { to.*MEMBER = from.*MEMBER; },
        [](const Settings& one, const Settings& other) { return one.*MEMBER == other.*MEMBER; }};
}

}  // namespace

const std::vector<SettingKey>& settingKeys() {
    using S = Settings;
    static const std::vector<SettingKey> keys = {
        key<&S::loads, readLoads, writeLoads>("loads"),
        key<&S::supports, readSupports, writeSupports>("supports"),
        key<&S::volumeFraction, readVolumeFraction, writeDouble>("volumeFraction"),
        key<&S::penalty, readPenalty, writeDouble>("penalty"),
        key<&S::passive, readPassive, writePassive>("passive"),
        key<&S::blob, readBlob, writeBlob>("blob"),
        key<&S::loadCasesInUse, readLoadCasesInUse, writeLoadCasesInUse>("loadCasesInUse")};
    return keys;
}

}  // namespace voxam::inline format
