#include "format/scene_reader.h"

#include <algorithm>

#include "format/assignment.h"
#include "format/character_rows.h"
#include "format/detail.h"
#include "format/input_error.h"
#include "format/json_value.h"
#include "format/limits.h"
#include "format/setting_keys.h"
#include "format/text.h"

namespace voxam::inline format {

namespace {

constexpr const char* CHANGE_ORDER =
    " (after the change before it, and within the iterations of the scene)";

/// These, and the keys of the settings.
std::vector<std::string> withSettingKeys(std::vector<std::string> keys) {
    for (const SettingKey& key : settingKeys()) keys.emplace_back(key.name);
    return keys;
}

float densityOfCharacter(const JsonValue& row, char character, int x) {
    if (character == '#') return 1.0f;
    if (character == '.') return 0.0f;
    if (character >= '0' && character <= '9') return static_cast<float>(character - '0') / 10.0f;
    failAtCharacter(row, x, character, "'#' (solid), '.' (void) or a digit (tenths)");
}

void readDensityRow(const JsonValue& row, int refinement, Field& densities, int y) {
    const int width = densities.width / refinement;
    if (row.raw().is_string()) {
        const auto characters = drawingRow(row, width, refinement);
        for (int x = 0; x < densities.width; ++x)
            densities.at(x, y) =
                densityOfCharacter(row, characters[static_cast<std::size_t>(x)], x);
        return;
    }
    const auto numbers = row.elements("a row of characters or a list of numbers");
    checkDrawingRow(row, numbers.size(), width, refinement, "number");
    for (int x = 0; x < densities.width; ++x)
        densities.at(x, y) = static_cast<float>(numbers[static_cast<std::size_t>(x)].number(0, 1));
}

Field readDensityRows(const JsonValue& value, const Scene& scene) {
    const auto rows =
        value.elements("rows, one number for all, {\"png\": file} or {\"csv\": file}");
    const int count = static_cast<int>(rows.size());
    const int refinement = std::clamp(count / scene.height, 1, Scene::MAX_DESIGN_REFINEMENT);
    if (count != refinement * scene.height)
        value.fail(counted(rows.size(), "row") + ", expected " + std::to_string(scene.height) +
                   " (grid.height) or a whole multiple up to " +
                   std::to_string(Scene::MAX_DESIGN_REFINEMENT));
    Field densities(refinement * scene.width, count);
    for (int y = 0; y < count; ++y)
        readDensityRow(rows[static_cast<std::size_t>(y)], refinement, densities, y);
    return densities;
}

/// Of a file that has another kind than the key says, the key counts.
Field readDensityFile(const JsonValue& value, Scene& scene, const DesignReaders& readers) {
    value.allowOnly({"png", "csv"});
    const auto csv = value.find("csv");
    if (csv && value.find("png")) value.fail("names two files, expected one");
    const JsonValue name = csv ? *csv : value.at("png");
    const auto file = scene.files.front().parent_path() / name.text();
    scene.files.push_back(file);
    const auto& read = csv ? readers.csv : readers.png;
    if (!read) name.fail("files cannot be read here");
    try {
        return read(file, scene.width, scene.height);
    } catch (const InputError& error) {
        name.fail(error.what());
    }
}

Field readDensities(const JsonValue& value, Scene& scene, const DesignReaders& readers) {
    const auto& json = value.raw();
    if (json.is_number())
        return Field(scene.width, scene.height, static_cast<float>(value.number(0, 1)));
    if (json.is_object()) return readDensityFile(value, scene, readers);
    return readDensityRows(value, scene);
}

int readRefinement(const JsonValue& value, const char* key) {
    const auto refinement = value.find(key);
    return refinement ? refinement->integer(1, Scene::MAX_REFINEMENT) : 1;
}

/// Fills `subdivision` and `meshFactor` of a scene or of a restart.
template <typename Target>
void readRefinements(const JsonValue& value, Target& target) {
    target.subdivision = readRefinement(value, "subdivision");
    target.meshFactor = readRefinement(value, "meshFactor");
}

Restart readRestart(const JsonValue& value) {
    value.allowOnly({"design", "subdivision", "meshFactor"});
    Restart restart;
    restart.keepsDesign = value.at("design").oneOf({"new", "keep"}) == "keep";
    if (restart.keepsDesign)
        value.allowOnly({"design"});
    else
        readRefinements(value, restart);
    return restart;
}

Change readChange(const JsonValue& value, const Scene& scene) {
    value.allowOnly(withSettingKeys({"iteration", "restart"}));
    Change change;
    for (const SettingKey& key : settingKeys())
        if (const auto setting = value.find(key.name)) {
            key.read(*setting, scene, change.settings);
            change.keys.emplace_back(key.name);
        }
    const int first = scene.timeline.empty() ? 2 : scene.timeline.back().iteration + 1;
    const JsonValue iteration = value.at("iteration");
    if (first > scene.iterations)
        iteration.fail("no iteration is left for it: the change before it comes in the last one");
    change.iteration = iteration.integer(first, scene.iterations, CHANGE_ORDER);
    if (const auto restart = value.find("restart")) change.restart = readRestart(*restart);
    if (change.keys.empty() && !change.restart) value.fail("changes nothing");
    return change;
}

void readTimeline(const JsonValue& value, Scene& scene) {
    const auto changes = value.elements("a list of changes in brackets []");
    if (changes.size() > static_cast<std::size_t>(Scene::MAX_CHANGES))
        value.fail(std::to_string(changes.size()) + " changes, the limit is " +
                   std::to_string(Scene::MAX_CHANGES));
    for (const auto& change : changes) scene.timeline.push_back(readChange(change, scene));
}

/// Fails at the key at fault, or at what is nearest to it.
void checkDetail(const JsonValue& root, const Scene& scene) {
    const auto fault = findDetailFault(scene);
    if (!fault) return;
    JsonValue at = root;
    if (fault->change) at = root.at("timeline").elements("changes")[*fault->change];
    if (fault->change && !fault->key.empty()) at = at.at("restart");
    at.find(fault->key).value_or(at).fail(fault->text);
}

std::string readTitle(const JsonValue& value) {
    const std::string title = onOneLine(value.text());
    value.failIf(faultOfTitle(title));
    return title;
}

Symmetry readSymmetry(const JsonValue& value) {
    const auto names = SYMMETRY_NAMES.begin();
    const std::string name = value.oneOf({names + 1, SYMMETRY_NAMES.end()});
    return static_cast<Symmetry>(std::find(names, SYMMETRY_NAMES.end(), name) - names);
}

LoadCase readLoadCase(const JsonValue& value) {
    value.allowOnly({"name", "weight"});
    LoadCase loadCase;
    if (const auto name = value.find("name")) {
        loadCase.name = name->text();
        name->failIf(faultOfLoadCaseName(loadCase.name));
    }
    if (const auto weight = value.find("weight"))
        loadCase.weight = weight->number(Scene::MIN_WEIGHT, Scene::MAX_WEIGHT);
    return loadCase;
}

/// A number of load cases, or a list of them.
std::vector<LoadCase> readLoadCases(const JsonValue& value) {
    if (value.raw().is_number())
        return std::vector<LoadCase>(
            static_cast<std::size_t>(value.integer(1, Scene::MAX_LOAD_CASES)));
    std::vector<LoadCase> loadCases;
    for (const auto& loadCase :
         value.elements("a whole number or a list of load cases in brackets []"))
        loadCases.push_back(readLoadCase(loadCase));
    if (loadCases.empty()) value.fail("needs at least one load case");
    if (loadCases.size() > static_cast<std::size_t>(Scene::MAX_LOAD_CASES))
        value.fail(std::to_string(loadCases.size()) + " load cases, the limit is " +
                   std::to_string(Scene::MAX_LOAD_CASES));
    return loadCases;
}

/// The plate without what acts on it.
Scene readPlate(const JsonValue& root, const std::filesystem::path& file) {
    root.allowOnly(withSettingKeys({"$schema", "title", "description", "grid", "symmetry",
                                    "elementSize", "loadCases", "densities", "subdivision",
                                    "meshFactor", "iterations", "timeline"}));
    if (const auto schema = root.find("$schema")) schema->text();
    Scene scene;
    scene.files.push_back(file);
    scene.title = nameOf(file.stem());
    if (const auto title = root.find("title")) scene.title = readTitle(*title);
    if (const auto description = root.find("description")) scene.description = description->text();

    const JsonValue grid = root.at("grid");
    grid.allowOnly({"width", "height"});
    scene.width = grid.at("width").integer(1, Scene::MAX_SIDE, " (elements)");
    scene.height = grid.at("height").integer(1, Scene::MAX_SIDE, " (elements)");
    if (const auto symmetry = root.find("symmetry")) scene.symmetry = readSymmetry(*symmetry);
    if (const auto size = root.find("elementSize"))
        scene.elementSize = size->number(Scene::MIN_ELEMENT_SIZE, Scene::MAX_ELEMENT_SIZE);
    if (const auto loadCases = root.find("loadCases")) scene.loadCases = readLoadCases(*loadCases);
    scene.loadCasesInUse = allLoadCases(scene);
    return scene;
}

[[noreturn]] void failWithout(const Scene& scene, const std::string& key, const std::string& why) {
    throw InputError(nameOf(scene.files.front()) + ": " + key + ": missing key, " + why);
}

}  // namespace

Scene parseScene(const std::string& text, const std::filesystem::path& file,
                 const DesignReaders& readers, const std::vector<std::string>& assignments) {
    if (text.starts_with("\x89PNG"))
        throw InputError(nameOf(file) +
                         ": is a picture, expected a scene; to score a design, give it with "
                         "--design");
    auto document = parseJson(text, file);
    assign(document, assignments);
    const JsonValue root(document, nameOf(file));
    Scene scene = readPlate(root, file);
    for (const char* key : {"loads", "supports"}) root.at(key);
    for (const SettingKey& key : settingKeys())
        if (const auto setting = root.find(key.name)) key.read(*setting, scene, scene);
    if (const auto densities = root.find("densities"))
        scene.densities = readDensities(*densities, scene, readers);
    readRefinements(root, scene);
    if (const auto iterations = root.find("iterations"))
        scene.iterations = iterations->integer(1, Scene::MAX_ITERATIONS);
    if (const auto timeline = root.find("timeline")) readTimeline(*timeline, scene);
    checkDetail(root, scene);
    return scene;
}

bool hasComments(const std::filesystem::path& file) {
    constexpr bool withComments = true;
    try {
        const std::string text = readText(file);
        return nlohmann::json::accept(text, withComments) &&
               !nlohmann::json::accept(text, !withComments);
    } catch (const InputError&) {
        return false;
    }
}

void requireScore(const Scene& scene) {
    if (scene.densities) return;
    failWithout(
        scene, "densities",
        scene.volumeFraction > 0
            ? "needed for a score; with its volumeFraction this is a scene for voxam optimise"
            : "needed for a score");
}

void requireOptimisation(const Scene& scene) {
    if (scene.volumeFraction > 0) return;
    failWithout(scene, "volumeFraction",
                scene.densities
                    ? "needed to optimise; with its densities this is a scene for voxam score"
                    : "needed to optimise");
}

}  // namespace voxam::inline format
