#include "scene.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "drawing.h"
#include "input_error.h"
#include "json_value.h"
#include "png_image.h"

namespace {

const std::vector<std::string> sceneKeys = {
    "title", "description", "grid", "loadCases", "loads", "supports", "densities",
    // Read by the optimiser only.
    "volumeFraction", "subdivision", "meshFactor", "penalty", "passive", "blob", "loadCasesInUse",
    "timeline", "iterations"};

const std::vector<std::string> changeKeys = {"iteration",      "loads",          "supports",
                                             "volumeFraction", "penalty",        "passive",
                                             "blob",           "loadCasesInUse", "restart"};
constexpr const char* changeOrder =
    " (after the change before it, and within the iterations of the scene)";

Range readNodes(const JsonValue& value, int last) {
    return value.range(last, " (nodes of the grid)");
}

double readForce(const JsonValue& load, const char* key) {
    const auto force = load.find(key);
    return force ? force->number(-Scene::maxForce, Scene::maxForce) : 0.0;
}

int readLoadCase(const JsonValue& value, const Scene& scene) {
    return value.integer(0, scene.loadCases - 1,
                         " (the scene's loadCases is " + std::to_string(scene.loadCases) + ")");
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

Support readSupport(const JsonValue& value, const Scene& scene) {
    value.allowOnly({"x", "y", "fix"});
    Support support;
    support.x = readNodes(value.at("x"), scene.width);
    support.y = readNodes(value.at("y"), scene.height);
    const JsonValue fix = value.at("fix");
    const std::string directions = fix.text();
    if (directions != "x" && directions != "y" && directions != "xy")
        fix.fail("\"" + directions + "\" is not one of \"x\", \"y\", \"xy\"");
    support.fixX = directions != "y";
    support.fixY = directions != "x";
    return support;
}

float densityOfCharacter(const JsonValue& row, char character, int x) {
    if (character == '#') return 1.0f;
    if (character == '.') return 0.0f;
    if (character >= '0' && character <= '9') return static_cast<float>(character - '0') / 10.0f;
    failAtCharacter(row, x, character, "'#' (solid), '.' (void) or a digit (tenths)");
}

void readDensityRow(const JsonValue& row, Field& densities, int y) {
    if (row.raw().is_string()) {
        const auto characters = drawingRow(row, densities.width);
        for (int x = 0; x < densities.width; ++x)
            densities.at(x, y) =
                densityOfCharacter(row, characters[static_cast<std::size_t>(x)], x);
        return;
    }
    const auto numbers = row.elements("a row of characters or an array of numbers");
    checkDrawingRow(row, numbers.size(), densities.width, "numbers");
    for (int x = 0; x < densities.width; ++x)
        densities.at(x, y) = static_cast<float>(numbers[static_cast<std::size_t>(x)].number(0, 1));
}

Field readDensityImage(const JsonValue& value, Scene& scene) {
    value.allowOnly({"png"});
    const JsonValue name = value.at("png");
    const auto file = scene.files.front().parent_path() / name.text();
    scene.files.push_back(file);
    try {
        Field densities = readGreyPng(file, scene.width, scene.height);
        for (float& density : densities.values) density = 1.0f - density;
        return densities;
    } catch (const InputError& error) {
        name.fail(error.what());
    }
}

Field readDensities(const JsonValue& value, Scene& scene) {
    const auto& json = value.raw();
    if (json.is_number())
        return Field(scene.width, scene.height, static_cast<float>(value.number(0, 1)));
    if (json.is_object()) return readDensityImage(value, scene);
    const auto rows =
        drawingRows(value, scene.height, "rows, one number for all, or {\"png\": file}");
    Field densities(scene.width, scene.height);
    for (int y = 0; y < scene.height; ++y)
        readDensityRow(rows[static_cast<std::size_t>(y)], densities, y);
    return densities;
}

std::vector<Load> readLoads(const JsonValue& value, const Scene& scene) {
    std::vector<Load> loads;
    for (const auto& load : value.elements("an array of loads"))
        loads.push_back(readLoad(load, scene));
    if (loads.empty()) value.fail("needs at least one load");
    return loads;
}

std::vector<Support> readSupports(const JsonValue& value, const Scene& scene) {
    std::vector<Support> supports;
    for (const auto& support : value.elements("an array of supports"))
        supports.push_back(readSupport(support, scene));
    return supports;
}

std::vector<int> readLoadCasesInUse(const JsonValue& value, const Scene& scene) {
    std::set<int> cases;
    for (const auto& loadCase : value.elements("an array of load cases"))
        cases.insert(readLoadCase(loadCase, scene));
    if (cases.empty()) value.fail("needs at least one load case");
    return {cases.begin(), cases.end()};
}

std::string wholeNumber(double value) { return std::to_string(std::llround(value)); }

int readRefinement(const JsonValue& value, const char* key) {
    const auto refinement = value.find(key);
    return refinement ? refinement->integer(1, Scene::maxRefinement) : 1;
}

/// Fills `subdivision` and `meshFactor` of a scene or of a restart.
template <typename Target>
void readRefinements(const JsonValue& value, const Scene& scene, Target& target) {
    target.subdivision = readRefinement(value, "subdivision");
    target.meshFactor = readRefinement(value, "meshFactor");
    const auto check = [&](const char* what, double refinement, double mostCells) {
        const double columns = refinement * scene.width;
        const double rows = refinement * scene.height;
        if (columns * rows > mostCells || std::max(columns, rows) > Scene::maxFineSide)
            value.fail("refines the " + std::string(what) + " to " + wholeNumber(columns) + " x " +
                       wholeNumber(rows) + " cells, allowed are at most " + wholeNumber(mostCells) +
                       ", and " + wholeNumber(Scene::maxFineSide) + " along a side");
    };
    check("design", target.subdivision, Scene::maxDesignCells);
    check("picture", target.subdivision * target.meshFactor, Scene::maxPictureCells);
}

/// The keys that a scene and a change of its timeline have in common.
Change readSettings(const JsonValue& value, const Scene& scene) {
    Change settings;
    if (const auto loads = value.find("loads")) settings.loads = readLoads(*loads, scene);
    if (const auto supports = value.find("supports"))
        settings.supports = readSupports(*supports, scene);
    if (const auto fraction = value.find("volumeFraction"))
        settings.volumeFraction = fraction->number(0, 1);
    if (const auto penalty = value.find("penalty"))
        settings.penalty = penalty->number(1, Scene::maxPenalty);
    if (const auto passive = value.find("passive"))
        settings.passive = readPassiveCells(*passive, scene.width, scene.height);
    if (const auto blob = value.find("blob"))
        settings.blob = readCells(*blob, scene.width, scene.height);
    if (const auto cases = value.find("loadCasesInUse"))
        settings.loadCasesInUse = readLoadCasesInUse(*cases, scene);
    return settings;
}

Restart readRestart(const JsonValue& value, const Scene& scene) {
    value.allowOnly({"design", "subdivision", "meshFactor"});
    const JsonValue design = value.at("design");
    const auto kind = design.text();
    if (kind != "new" && kind != "keep")
        design.fail("\"" + kind + "\" is not one of \"new\", \"keep\"");
    Restart restart;
    restart.keepsDesign = kind == "keep";
    if (restart.keepsDesign)
        value.allowOnly({"design"});
    else
        readRefinements(value, scene, restart);
    return restart;
}

Change readChange(const JsonValue& value, const Scene& scene) {
    value.allowOnly(changeKeys);
    Change change = readSettings(value, scene);
    const int first = scene.timeline.empty() ? 2 : scene.timeline.back().iteration + 1;
    change.iteration = value.at("iteration").integer(first, scene.iterations, changeOrder);
    if (const auto restart = value.find("restart")) change.restart = readRestart(*restart, scene);
    for (const auto& key : changeKeys)
        if (key != "iteration" && value.find(key))
            change.summary += (change.summary.empty() ? "" : ", ") + key;
    if (change.summary.empty()) value.fail("changes nothing");
    return change;
}

void checkPlacement(const JsonValue& value, const Scene& scene) {
    if (scene.subdivision == scene.meshFactor) return;
    if (scene.passive.empty() && scene.blob.empty()) return;
    value.fail("subdivision " + std::to_string(scene.subdivision) + " and meshFactor " +
               std::to_string(scene.meshFactor) +
               " have to be equal, or passive cells and blob would not lie where they should");
}

void readTimeline(const JsonValue& value, Scene& scene) {
    const auto changes = value.elements("an array of changes");
    if (changes.size() > static_cast<std::size_t>(Scene::maxChanges))
        value.fail(std::to_string(changes.size()) + " changes, allowed are at most " +
                   std::to_string(Scene::maxChanges));
    Scene later = scene;
    for (const auto& change : changes) {
        scene.timeline.push_back(readChange(change, scene));
        apply(scene.timeline.back(), later);
        checkPlacement(change, later);
    }
}

/// The plate without what acts on it.
Scene readPlate(const JsonValue& root, const std::filesystem::path& file) {
    root.allowOnly(sceneKeys);
    Scene scene;
    scene.files.push_back(file);
    scene.title = onOneLine(file.stem().string());
    if (const auto title = root.find("title")) scene.title = onOneLine(title->text());
    if (const auto description = root.find("description")) scene.description = description->text();

    const JsonValue grid = root.at("grid");
    grid.allowOnly({"width", "height"});
    scene.width = grid.at("width").integer(1, Scene::maxSide, " (elements)");
    scene.height = grid.at("height").integer(1, Scene::maxSide, " (elements)");
    if (const auto loadCases = root.find("loadCases"))
        scene.loadCases = loadCases->integer(1, Scene::maxLoadCases);
    return scene;
}

template <typename Visit>
void forEachNode(const Range& columns, const Range& rows, Visit visit) {
    for (int x = columns.from; x <= columns.to; ++x)
        for (int y = rows.from; y <= rows.to; ++y) visit(x, y);
}

void appendRecord(std::vector<float>& records, int x, int y, double third, double fourth,
                  int fifth) {
    for (const double value : {double(x), double(y), third, fourth, double(fifth)})
        records.push_back(static_cast<float>(value));
}

}  // namespace

Scene readScene(const std::filesystem::path& file) {
    const auto document = readJsonFile(file);
    const JsonValue root(document, file.string());
    Scene scene = readPlate(root, file);
    scene.loads = readLoads(root.at("loads"), scene);
    scene.supports = readSupports(root.at("supports"), scene);
    if (const auto densities = root.find("densities"))
        scene.densities = readDensities(*densities, scene);
    return scene;
}

Scene readSceneToOptimise(const std::filesystem::path& file) {
    const auto document = readJsonFile(file);
    const JsonValue root(document, file.string());
    Scene scene = readPlate(root, file);
    for (const char* key : {"loads", "supports", "volumeFraction"}) root.at(key);
    for (int loadCase = 0; loadCase < scene.loadCases; ++loadCase)
        scene.loadCasesInUse.push_back(loadCase);
    apply(readSettings(root, scene), scene);
    readRefinements(root, scene, scene);
    checkPlacement(root, scene);
    if (const auto iterations = root.find("iterations"))
        scene.iterations = iterations->integer(1, Scene::maxIterations);
    if (const auto timeline = root.find("timeline")) readTimeline(*timeline, scene);
    return scene;
}

void apply(const Change& change, Scene& scene) {
    const auto replace = [](auto& value, const auto& newValue) {
        if (newValue) value = *newValue;
    };
    replace(scene.loads, change.loads);
    replace(scene.supports, change.supports);
    replace(scene.volumeFraction, change.volumeFraction);
    replace(scene.penalty, change.penalty);
    replace(scene.passive, change.passive);
    replace(scene.blob, change.blob);
    replace(scene.loadCasesInUse, change.loadCasesInUse);
    if (change.restart && !change.restart->keepsDesign) {
        scene.subdivision = change.restart->subdivision;
        scene.meshFactor = change.restart->meshFactor;
    }
}

std::vector<float> loadRecords(const Scene& scene) {
    std::vector<float> records;
    for (const Load& load : scene.loads) {
        const double nodes = static_cast<double>(load.x.count()) * load.y.count();
        forEachNode(load.x, load.y, [&](int x, int y) {
            appendRecord(records, x, y, load.fx / nodes, load.fy / nodes, load.loadCase);
        });
    }
    return records;
}

std::vector<float> supportRecords(const Scene& scene) {
    std::vector<float> records;
    for (const Support& support : scene.supports)
        forEachNode(support.x, support.y, [&](int x, int y) {
            if (support.fixX) appendRecord(records, x, y, 0, 0, 0);
            if (support.fixY) appendRecord(records, x, y, 1, 0, 0);
        });
    return records;
}
