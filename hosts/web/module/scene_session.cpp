#include "scene_session.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "checks/checks.h"
#include "export/outline.h"
#include "format/input_error.h"
#include "format/refinement.h"
#include "format/resize.h"
#include "format/scene_reader.h"
#include "format/scene_writer.h"
#include "format/symmetry.h"

using namespace voxam;

namespace {

using Reply = SceneSession::Reply;

Field refuseFile(const std::filesystem::path& file, int /*width*/, int /*height*/) {
    throw InputError(file.string() + ": a page cannot read the files that a scene refers to");
}

Reply toJson(const Range& range) { return Reply::array({range.from, range.to}); }

Reply toJson(const Findings& findings) {
    Reply list = Reply::array();
    for (const Finding& finding : findings) {
        Reply entry = {{"isError", finding.severity == Finding::ERROR},
                       {"key", finding.key},
                       {"text", finding.text}};
        if (finding.place) {
            entry["place"] = {{"ofNodes", finding.place->ofNodes},
                              {"x", toJson(finding.place->x)},
                              {"y", toJson(finding.place->y)}};
        }
        list.push_back(entry);
    }
    return list;
}

std::vector<std::uint8_t> kindsOf(const Scene& scene) {
    std::vector<std::uint8_t> kinds(static_cast<std::size_t>(scene.width) *
                                    static_cast<std::size_t>(scene.height));
    const auto mark = [&](const Area& area, std::uint8_t kind) {
        for (const Cell& cell : area.cells) {
            kinds[static_cast<std::size_t>(cell.y) * static_cast<std::size_t>(scene.width) +
                  static_cast<std::size_t>(cell.x)] += kind;
        }
    };
    mark(scene.passive.voids, 1);
    mark(scene.passive.solids, 2);
    mark(scene.passive.secondSolids, 3);
    mark(scene.blob, 4);
    return kinds;
}

// The scene in force, the blob where it moved to.
std::vector<std::uint8_t> kindsOf(const SceneRun& run) {
    if (!run.movedBlob()) return kindsOf(run.scene());
    Scene moved = run.scene();
    moved.blob = *run.movedBlob();
    return kindsOf(moved);
}

Reply toJson(const Outline& outline) {
    Reply contours = Reply::array();
    for (const Contour& contour : outline.contours) {
        Reply corners = Reply::array();
        for (const OutlinePoint& corner : contour.corners) {
            corners.push_back(corner.x);
            corners.push_back(corner.y);
        }
        contours.push_back({{"hole", contour.hole}, {"corners", corners}});
    }
    return {{"width", outline.width}, {"height", outline.height}, {"contours", contours}};
}

// A failure of an action is a reply, not a trap of the module.
template <typename Action>
Reply guarded(const Action& action) {
    try {
        return action();
    } catch (const std::exception& failure) {
        return {{"error", failure.what()}};
    }
}

}  // namespace

Reply SceneSession::open(const std::string& text, const std::string& name) {
    return guarded([&] {
        scene = std::make_shared<const Scene>(parseScene(text, name, {refuseFile, refuseFile}));
        kinds = kindsOf(*scene);
        const bool isForOptimiser = scene->volumeFraction > 0;
        return Reply{{"scene", sceneText(*scene)},
                     {"findings", toJson(isForOptimiser ? checkBeforeOptimisation(*scene)
                                                        : checkBeforeScore(*scene))}};
    });
}

Reply SceneSession::resized(int width, int height) const {
    return guarded([&] {
        Scene other = *scene;
        resizeGrid(other, width, height);
        return Reply{{"scene", sceneText(other)}};
    });
}

Reply SceneSession::startRun() {
    return guarded([&] {
        requireOptimisation(*scene);
        run.reset();  // its memory first
        run.emplace(scene);
        followed = scene;
        return changesMade(false);
    });
}

Reply SceneSession::followScene() {
    if (!run || !hasSamePlate(*scene, *followed)) return startRun();
    return guarded([&] {
        requireOptimisation(*scene);
        run->edit(scene);
        followed = scene;
        kinds = kindsOf(*run);
        return changesMade(run->changesMade() > 0);
    });
}

Reply SceneSession::changesMade(bool isNews) const {
    Reply reply = {{"changes", run->changesMade()}};
    if (isNews) reply["scene"] = sceneText(run->scene());
    return reply;
}

Reply SceneSession::iterate(bool movesBlob) {
    return guarded([&] {
        if (!run) throw std::logic_error("Start the run before its first iteration");
        if (!run->next())
            throw std::logic_error("The library refused the last iteration: edit the scene first");
        const std::size_t before = run->changesMade();
        const SceneRun::Outcome outcome = run->iterate(movesBlob);
        const bool isChanged = run->changesMade() != before;
        if (movesBlob || isChanged) kinds = kindsOf(*run);
        Reply reply = changesMade(isChanged);
        const IterationRecord& record = outcome.record;
        reply.update({{"iteration", record.iteration}, {"message", outcome.refusal}});
        if (!outcome.refusal.empty()) {
            if (const auto next = run->next()) reply["resumesAt"] = *next;
            return reply;
        }
        latest = record;
        reply.update({{"compliance", record.compliance},
                      {"change", record.change},
                      {"volume", record.volume},
                      {"columns", run->material().width},
                      {"time", record.times.totalTime}});
        return reply;
    });
}

const Field& SceneSession::material() const {
    static const Field none;
    return run ? run->material() : none;
}

const SceneRun& SceneSession::runWithDesign() const {
    if (material().values.empty()) throw std::logic_error("There is no design yet");
    return *run;
}

Reply SceneSession::scoreRun(int refinement) {
    return guarded([&] {
        const Scene& plate = runWithDesign().scene();
        const int cells = refinement > 0 ? refinement : drawnRefinement(plate);
        const DrawnDesign drawn = drawnDesign(material(), plate, cells);
        Reply reply = score(drawn.design, plate);
        reply["warnings"] = toJson(checkResult(
            {latest.compliance, latest.volume, drawn.design, assessment, drawn.level}, plate));
        return reply;
    });
}

Reply SceneSession::scoreDrawing(const std::uint8_t* cells, int refinement) {
    return guarded([&] {
        Reply reply = score(drawing(cells, refinement), *scene);
        reply["warnings"] = Reply::array();
        return reply;
    });
}

Field SceneSession::drawing(const std::uint8_t* cells, int refinement) const {
    Field design(scene->width * refinement, scene->height * refinement);
    std::copy_n(cells, design.values.size(), design.values.begin());
    return design;
}

Reply SceneSession::score(Field design, const Scene& plate) {
    scored = std::move(design);
    assessment = assess(scored, withLoadsInUse(plate), true);
    Reply floating = Reply::array();
    for (const FloatingPart& part : assessment.floating) {
        for (const Cell& cell : part.cells) floating.push_back(cell.y * scored.width + cell.x);
    }
    return {{"supported", assessment.score.supported},
            {"compliance", assessment.score.compliance},
            {"volume", mean(scored)},
            {"cells", scored.values.size()},
            {"floating", floating},
            {"problems", toJson(assessment.problems)}};
}

const Field* SceneSession::energies() const {
    return assessment.score.supported ? &assessment.score.energies : nullptr;
}

const std::vector<double>* SceneSession::displacements() const {
    const auto worst = std::max_element(assessment.states.begin(), assessment.states.end(),
                                        [](const PlateState& one, const PlateState& other) {
                                            return one.compliance < other.compliance;
                                        });
    return worst == assessment.states.end() ? nullptr : &worst->displacements;
}

Reply SceneSession::outline() const {
    return guarded([&] {
        const Scene& plate = runWithDesign().scene();
        // As the program does: at the level that keeps the volume.
        const double level = drawnDesign(material(), plate, drawnRefinement(plate)).level;
        return toJson(traceOutline(wholeOf(material(), plate.symmetry), plate.refinement(),
                                   plate.elementSize, level));
    });
}

Reply SceneSession::outline(const std::uint8_t* cells, int refinement) const {
    return guarded([&] {
        const Field whole = wholeOf(drawing(cells, refinement), scene->symmetry);
        return toJson(traceOutline(whole, refinement, scene->elementSize));
    });
}
