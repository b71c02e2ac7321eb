#include "new_command.h"

#include <cstdio>

#include "console.h"
#include "export/output_file.h"
#include "format/input_error.h"
#include "format/scene_writer.h"
#include "format/text.h"

using namespace voxam;

namespace {

Load force(Range x, Range y) { return {x, y, 0, 1, 0}; }

void addRectangle(const Range& columns, const Range& rows, Area& area) {
    for (int x = columns.from; x <= columns.to; ++x)
        for (int y = rows.from; y <= rows.to; ++y) area.cells.push_back({x, y});
}

Scene plate(const NewOptions& options, const char* title, int width, int height) {
    Scene scene;
    scene.title = title;
    scene.width = options.width > 0 ? options.width : width;
    scene.height = options.height > 0 ? options.height : height;
    scene.volumeFraction = 0.4;
    scene.subdivision = scene.meshFactor = 2;
    scene.loadCasesInUse = {0};
    return scene;
}

Scene cantilever(const NewOptions& options) {
    Scene scene = plate(options, "Cantilever", 80, 40);
    const int middle = scene.height / 2;
    scene.loads = {force({scene.width, scene.width}, {middle, middle})};
    scene.supports = {{{0, 0}, {0, scene.height}, true, true}};
    return scene;
}

Scene halfBeam(const NewOptions& options) {
    Scene scene = plate(options, "Half of a beam", 90, 30);
    scene.volumeFraction = 0.5;
    scene.symmetry = Symmetry::LEFT;
    scene.loads = {force({0, 0}, {0, 0})};
    scene.supports = {{{0, 0}, {0, scene.height}, true, false},
                      {{scene.width, scene.width}, {scene.height, scene.height}, false, true}};
    return scene;
}

Scene bridge(const NewOptions& options) {
    Scene scene = plate(options, "Bridge", 100, 40);
    scene.loads = {force({0, scene.width}, {scene.height, scene.height})};
    scene.supports = {{{0, 0}, {scene.height, scene.height}, true, true},
                      {{scene.width, scene.width}, {scene.height, scene.height}, true, true}};
    addRectangle({0, scene.width - 1}, {scene.height - 1, scene.height - 1}, scene.passive.solids);
    return scene;
}

Scene bracket(const NewOptions& options) {
    Scene scene = plate(options, "Bracket around a corner", 60, 60);
    const int arm = 2 * scene.width / 5;
    const int foot = 2 * scene.height / 5;
    const int corner = scene.height - foot;
    scene.loads = {force({scene.width, scene.width}, {corner + foot / 2, corner + foot / 2})};
    scene.supports = {{{0, arm}, {0, 0}, true, true}};
    addRectangle({arm, scene.width - 1}, {0, corner - 1}, scene.passive.voids);
    return scene;
}

Scene sceneOf(const NewOptions& options) {
    if (options.kind == "cantilever") return cantilever(options);
    if (options.kind == "mbb") return halfBeam(options);
    if (options.kind == "bridge") return bridge(options);
    return bracket(options);
}

}  // namespace

int runNew(const NewOptions& options) {
    const std::string text = sceneText(sceneOf(options));
    if (options.file.empty()) {
        std::fputs(text.c_str(), stdout);
        return 0;
    }
    std::error_code unknown;
    if (std::filesystem::exists(options.file, unknown))
        throw InputError(nameOf(options.file) + ": exists already");
    checkOutput(options.file, {});
    writeFile(options.file, {text.begin(), text.end()});
    printRow("scene", nameOf(options.file));
    printRow("next", "voxam optimise " + nameOf(options.file) + " --picture OUT.png");
    return 0;
}
