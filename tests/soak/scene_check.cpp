#include "scene_check.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>

#include "assessment.h"
#include "design_file.h"
#include "fault.h"
#include "input_error.h"
#include "optimiser.h"
#include "records.h"
#include "refinement.h"
#include "scene_reader.h"
#include "scene_writer.h"

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

void requireInside(const Range& range, int last) {
    require(range.from >= 0 && range.from <= range.to && range.to <= last,
            "ranges are on the plate");
}

void requireCells(const Area& area, const Scene& scene) {
    require(std::is_sorted(area.cells.begin(), area.cells.end()) &&
                std::adjacent_find(area.cells.begin(), area.cells.end()) == area.cells.end(),
            "an area has each element once, in order");
    for (const Cell& cell : area.cells) {
        requireInside({cell.x, cell.x}, scene.width - 1);
        requireInside({cell.y, cell.y}, scene.height - 1);
    }
}

void requireLimits(const Settings& settings, const Scene& scene) {
    for (const Load& load : settings.loads) {
        requireInside(load.x, scene.width);
        requireInside(load.y, scene.height);
        require(std::fabs(load.fx) <= Scene::MAX_FORCE && std::fabs(load.fy) <= Scene::MAX_FORCE,
                "forces are within bounds");
        require(load.loadCase >= 0 && load.loadCase < scene.loadCases, "load cases exist");
    }
    for (const Support& support : settings.supports) {
        requireInside(support.x, scene.width);
        requireInside(support.y, scene.height);
        require(support.fixX || support.fixY, "a support holds a direction");
    }
    require(settings.volumeFraction >= 0 && settings.volumeFraction <= 1,
            "a fraction is a fraction");
    require(settings.penalty >= 1 && settings.penalty <= Scene::MAX_PENALTY,
            "the penalty is within bounds");
    for (const int loadCase : settings.loadCasesInUse) {
        require(loadCase >= 0 && loadCase < scene.loadCases, "load cases in use exist");
    }
    requireCells(settings.blob, scene);
    requireCells(settings.passive.voids, scene);
    requireCells(settings.passive.solids, scene);
    requireCells(settings.passive.secondSolids, scene);
}

void requireDesign(const Field& design, const Scene& scene) {
    const int refinement = refinementOf(design, scene);
    require(std::clamp(refinement, 1, MAX_DESIGN_REFINEMENT) == refinement &&
                design.width == refinement * scene.width &&
                design.height == refinement * scene.height,
            "a design has the size of the grid or a whole multiple of it");
    require(design.values.size() == size_t(design.width) * size_t(design.height),
            "there is a density for each element of a design");
    for (const float density : design.values) {
        require(density >= 0 && density <= 1, "densities are between 0 and 1");
    }
}

void requireLimits(const Scene& scene) {
    require(std::clamp(scene.width, 1, Scene::MAX_SIDE) == scene.width &&
                std::clamp(scene.height, 1, Scene::MAX_SIDE) == scene.height &&
                std::clamp(scene.subdivision, 1, Scene::MAX_REFINEMENT) == scene.subdivision &&
                std::clamp(scene.meshFactor, 1, Scene::MAX_REFINEMENT) == scene.meshFactor,
            "sizes are within bounds");
    require(!scene.loads.empty(), "there is a load");
    requireLimits(scene, scene);
    int before = 1;
    for (const Change& change : scene.timeline) {
        require(change.iteration > before && change.iteration <= scene.iterations,
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

void scoreDesign(const Scene& scene) {
    if (std::max(scene.densities->width, scene.densities->height) > 60) return;
    const Score score = assess(*scene.densities, scene).score;
    require(score.compliance >= 0, "a score is a number, and not negative");
}

// A scene that was read gives the library nothing that it has to stop at.
void runShortly(Scene scene) {
    if (scene.densities) scoreDesign(scene);
    const int side = std::max(scene.width, scene.height) * scene.refinement();
    if (side > 60) return;
    if (scene.volumeFraction == 0) return;
    Optimiser optimiser(scene);
    optimiser.iterate(scene.penalty, !scene.blob.empty());
    for (const Change& change : scene.timeline) {
        apply(change, scene);
        if (scene.refinement() * std::max(scene.width, scene.height) > 60) return;
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
