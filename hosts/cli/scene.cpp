#include "scene.h"

#include "input_error.h"
#include "json_value.h"
#include "png_image.h"

namespace {

const std::vector<std::string> sceneKeys = {
    "title", "description", "grid", "loadCases", "loads", "supports", "densities",
    // Read by the optimiser only.
    "volumeFraction", "subdivision", "meshFactor", "penalty", "passive", "blob", "loadCasesInUse",
    "timeline", "iterations"};

NodeRange readNodeRange(const JsonValue& value, int last) {
    const std::string note = " (nodes of the grid)";
    if (!value.raw().is_array()) {
        const int node = value.integer(0, last, note);
        return {node, node};
    }
    const auto ends = value.elements("a node or a range [from, to]");
    if (ends.size() != 2) value.fail("a range has two numbers, [from, to]");
    const NodeRange range{ends[0].integer(0, last, note), ends[1].integer(0, last, note)};
    if (range.from > range.to) value.fail("the range runs backwards, expected [from, to]");
    return range;
}

double readForce(const JsonValue& load, const char* key) {
    const auto force = load.find(key);
    return force ? force->number(-Scene::maxForce, Scene::maxForce) : 0.0;
}

Load readLoad(const JsonValue& value, const Scene& scene) {
    value.allowOnly({"x", "y", "fx", "fy", "loadCase"});
    if (!value.find("fx") && !value.find("fy")) value.fail("needs a force: fx, fy or both");
    Load load;
    load.x = readNodeRange(value.at("x"), scene.width);
    load.y = readNodeRange(value.at("y"), scene.height);
    load.fx = readForce(value, "fx");
    load.fy = readForce(value, "fy");
    if (const auto loadCase = value.find("loadCase"))
        load.loadCase = loadCase->integer(
            0, scene.loadCases - 1,
            " (the scene's loadCases is " + std::to_string(scene.loadCases) + ")");
    return load;
}

Support readSupport(const JsonValue& value, const Scene& scene) {
    value.allowOnly({"x", "y", "fix"});
    Support support;
    support.x = readNodeRange(value.at("x"), scene.width);
    support.y = readNodeRange(value.at("y"), scene.height);
    const JsonValue fix = value.at("fix");
    const std::string directions = fix.text();
    if (directions != "x" && directions != "y" && directions != "xy")
        fix.fail("\"" + directions + "\" is not one of \"x\", \"y\", \"xy\"");
    support.fixX = directions != "y";
    support.fixY = directions != "x";
    return support;
}

std::string sizeMismatch(std::size_t found, int expected, const char* what, const char* key) {
    return std::to_string(found) + " " + what + ", expected " + std::to_string(expected) +
           " (grid." + key + ")";
}

float densityOfCharacter(const JsonValue& row, char character, int x) {
    if (character == '#') return 1.0f;
    if (character == '.') return 0.0f;
    if (character >= '0' && character <= '9') return static_cast<float>(character - '0') / 10.0f;
    const bool printable = character > ' ' && character <= '~';
    row.fail("column " + std::to_string(x) + " holds " +
             (printable ? "'" + std::string(1, character) + "'" : "another character") +
             ", expected '#' (solid), '.' (void) or a digit (tenths)");
}

void readDensityRow(const JsonValue& row, Field& densities, int y) {
    if (row.raw().is_string()) {
        const auto text = row.text();
        if (text.size() != static_cast<std::size_t>(densities.width))
            row.fail(sizeMismatch(text.size(), densities.width, "characters", "width"));
        for (int x = 0; x < densities.width; ++x)
            densities.at(x, y) = densityOfCharacter(row, text[static_cast<std::size_t>(x)], x);
        return;
    }
    const auto numbers = row.elements("a row of characters or an array of numbers");
    if (numbers.size() != static_cast<std::size_t>(densities.width))
        row.fail(sizeMismatch(numbers.size(), densities.width, "numbers", "width"));
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
    const auto rows = value.elements("rows, one number for all, or {\"png\": file}");
    if (rows.size() != static_cast<std::size_t>(scene.height))
        value.fail(sizeMismatch(rows.size(), scene.height, "rows", "height"));
    Field densities(scene.width, scene.height);
    for (int y = 0; y < scene.height; ++y)
        readDensityRow(rows[static_cast<std::size_t>(y)], densities, y);
    return densities;
}

template <typename Visit>
void forEachNode(const NodeRange& columns, const NodeRange& rows, Visit visit) {
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
    const JsonValue loads = root.at("loads");
    for (const auto& load : loads.elements("an array of loads"))
        scene.loads.push_back(readLoad(load, scene));
    if (scene.loads.empty()) loads.fail("needs at least one load");
    for (const auto& support : root.at("supports").elements("an array of supports"))
        scene.supports.push_back(readSupport(support, scene));
    if (const auto densities = root.find("densities"))
        scene.densities = readDensities(*densities, scene);
    return scene;
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
