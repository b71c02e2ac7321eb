#include "scene_check.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "checks/assessment.h"
#include "export/design_file.h"
#include "export/scene_file.h"
#include "fault.h"
#include "format/input_error.h"
#include "format/refinement.h"
#include "format/scene_reader.h"
#include "format/scene_writer.h"
#include "format/timeline.h"
#include "run/optimiser.h"
#include "run/records.h"

using namespace voxam;

namespace soak {

namespace {

// Beside the images of scenes that come with the program.
const std::filesystem::path FILE_NAME = std::filesystem::path(VOXAM_SCENES) / "soak.json";

std::optional<Scene> read(const std::string& text) {
    try {
        return parseScene(text, FILE_NAME);
    } catch (const InputError& error) {
        const std::string what = error.what();
        require(what.starts_with(FILE_NAME.string() + ": ") &&
                    what.size() > FILE_NAME.string().size() + 2,
                "an error names the file and the fault: " + what);
        return std::nullopt;
    }
}

bool isWithin(auto value, auto least, auto most) { return least <= value && value <= most; }

bool isOnPlate(const Range& range, int last) {
    return range.from >= 0 && range.from <= range.to && range.to <= last;
}

void requireCells(const Area& area, const Scene& scene) {
    const auto& cells = area.cells;
    require(std::ranges::is_sorted(cells) && std::ranges::adjacent_find(cells) == cells.end(),
            "an area has each element once, in order");
    for (const auto& [x, y] : cells) {
        require(isWithin(x, 0, scene.width - 1) && isWithin(y, 0, scene.height - 1),
                "elements are on the plate");
    }
}

void requireLimits(const Settings& settings, const Scene& scene) {
    const auto exists = [&](int loadCase) {
        return isWithin(loadCase, 0, scene.loadCaseCount() - 1);
    };
    for (const Load& load : settings.loads) {
        require(isOnPlate(load.x, scene.width) && isOnPlate(load.y, scene.height),
                "loads are on the plate");
        require(isWithin(load.fx, -Scene::MAX_FORCE, Scene::MAX_FORCE) &&
                    isWithin(load.fy, -Scene::MAX_FORCE, Scene::MAX_FORCE),
                "forces are within bounds");
        require(exists(load.loadCase), "load cases exist");
    }
    for (const Support& support : settings.supports) {
        require(isOnPlate(support.x, scene.width) && isOnPlate(support.y, scene.height),
                "supports are on the plate");
        require(support.fixX || support.fixY, "a support holds a direction");
    }
    require(isWithin(settings.volumeFraction, 0, 1), "a fraction is a fraction");
    require(isWithin(settings.penalty, 1, Scene::MAX_PENALTY), "the penalty is within bounds");
    require(std::ranges::all_of(settings.loadCasesInUse, exists), "load cases in use exist");
    for (const Area* area : {&settings.blob, &settings.passive.voids, &settings.passive.solids,
                             &settings.passive.secondSolids}) {
        requireCells(*area, scene);
    }
}

void requireDesign(const Field& design, const Scene& scene) {
    const int refinement = refinementOf(design, scene);
    require(isWithin(refinement, 1, Scene::MAX_DESIGN_REFINEMENT) &&
                design.width == refinement * scene.width &&
                design.height == refinement * scene.height,
            "a design has the size of the grid or a whole multiple of it");
    require(design.values.size() == std::size_t(design.width) * std::size_t(design.height),
            "there is a density for each element of a design");
    require(std::ranges::all_of(design.values, [](float v) { return isWithin(v, 0, 1); }),
            "densities are between 0 and 1");
}

void requireLimits(const Scene& scene) {
    require(isWithin(scene.width, 1, Scene::MAX_SIDE) &&
                isWithin(scene.height, 1, Scene::MAX_SIDE) &&
                isWithin(scene.subdivision, 1, Scene::MAX_REFINEMENT) &&
                isWithin(scene.meshFactor, 1, Scene::MAX_REFINEMENT),
            "sizes are within bounds");
    require(!scene.loads.empty(), "there is a load");
    requireLimits(scene, scene);
    int before = 1;
    for (const Change& change : scene.timeline) {
        require(isWithin(change.iteration, before + 1, scene.iterations),
                "changes come one after the other");
        before = change.iteration;
        requireLimits(change.settings, scene);
    }
    if (scene.densities) requireDesign(*scene.densities, scene);
}

void requireRoundTrip(Scene scene) {
    const std::string text = sceneText(scene);
    Scene again = parseScene(text, FILE_NAME);
    require(sceneText(again) == text, "a scene that is written, read and written is the same text");
    // An image of densities becomes numbers.
    scene.files = again.files;
    require(again == scene, "a scene that is written and read is the same scene");
}

// A scene that was read gives the library nothing that it has to stop at. Large ones take too long.
void runShortly(Scene scene) {
    constexpr int largest = 60;
    const auto isLarge = [&] {
        return scene.refinement() * std::max(scene.width, scene.height) > largest;
    };
    if (scene.densities && std::max(scene.densities->width, scene.densities->height) <= largest) {
        require(assess(*scene.densities, scene).score.compliance >= 0,
                "a score is a number, and not negative");
    }
    if (isLarge() || scene.volumeFraction == 0) return;
    Optimiser optimiser(scene);
    optimiser.iterate(scene.penalty, !scene.blob.empty());
    for (const Change& change : scene.timeline) {
        apply(change, scene);
        if (isLarge()) return;
        if (change.restart) optimiser.restart(scene, change.restart->keepsDesign);
        optimiser.update(scene);
        optimiser.iterate(scene.penalty, !scene.blob.empty());
    }
}

}  // namespace

void checkScene(const std::string& text) {
    const std::optional<Scene> scene = read(text);
    if (!scene) return;
    requireLimits(*scene);
    requireRoundTrip(*scene);
    runShortly(*scene);
}

}  // namespace soak
