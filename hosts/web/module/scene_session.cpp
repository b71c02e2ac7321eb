#include "scene_session.h"

#include <voxam.h>

#include <algorithm>
#include <cmath>

#include "checks/checks.h"
#include "export/outline.h"
#include "format/input_error.h"
#include "format/refinement.h"
#include "format/scene_reader.h"
#include "format/scene_writer.h"
#include "format/timeline.h"
#include "run/records.h"

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

bool hasSamePlate(const Scene& one, const Scene& other) {
    return one.width == other.width && one.height == other.height &&
           one.subdivision == other.subdivision && one.meshFactor == other.meshFactor &&
           one.loadCases == other.loadCases;
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
        scene = parseScene(text, name, {refuseFile, refuseFile});
        kinds = kindsOf(scene);
        const bool isForOptimiser = scene.volumeFraction > 0;
        return Reply{{"scene", sceneText(scene)},
                     {"findings", toJson(isForOptimiser ? checkBeforeOptimisation(scene)
                                                        : checkBeforeScore(scene))}};
    });
}

Reply SceneSession::startRun() {
    return guarded([&] {
        requireOptimisation(scene);
        optimiser.reset();
        optimiser = std::make_unique<Optimiser>(scene);
        optimiser->update(scene);
        running = scene;
        iteration = 0;
        changesMade = 0;
        pixels.clear();
        return Reply::object();
    });
}

Reply SceneSession::followScene() {
    if (!optimiser || !hasSamePlate(scene, running)) return startRun();
    return guarded([&] {
        requireOptimisation(scene);
        optimiser->rescale(scene);
        optimiser->update(scene);
        running = scene;
        return Reply::object();
    });
}

Reply SceneSession::iterate(bool movesBlob) {
    return guarded([&] {
        if (!optimiser) throw std::logic_error("No run was started");
        const bool isChanged = makeChanges(iteration + 1);
        const Optimiser::Outcome outcome = optimiser->iterate(running.penalty, movesBlob);
        ++iteration;
        Reply reply = {{"iteration", iteration}, {"message", outcome.message}};
        if (isChanged) reply["scene"] = sceneText(running);
        if (!outcome.message.empty()) return reply;
        if (movesBlob) running.blob = optimiser->blob();
        if (movesBlob || isChanged) kinds = kindsOf(running);
        showMaterial();
        reply.update({{"compliance", outcome.compliance},
                      {"change", outcome.change},
                      {"volume", mean(material)},
                      {"columns", material.width},
                      {"time", outcome.times.totalTime}});
        return reply;
    });
}

bool SceneSession::makeChanges(int upcoming) {
    const std::size_t before = changesMade;
    const auto& timeline = scene.timeline;
    for (; changesMade < timeline.size() && timeline[changesMade].iteration <= upcoming;
         ++changesMade) {
        const Change& change = timeline[changesMade];
        apply(change, running);
        if (change.restart) {
            optimiser->restart(running, change.restart->keepsDesign);
        } else if (change.concernsProblem()) {
            optimiser->update(running);
        }
    }
    return changesMade != before;
}

void SceneSession::showMaterial() {
    material = optimiser->material();
    pixels.resize(material.values.size());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = static_cast<std::uint8_t>(std::lround(255 * material.values[i]));
    }
}

Reply SceneSession::scoreRun(int refinement) {
    return guarded([&] {
        if (pixels.empty()) throw std::logic_error("There is no design yet");
        const int cells = refinement > 0 ? refinement : drawnRefinement(running);
        return score(drawnDesign(material, running, cells).design);
    });
}

Reply SceneSession::scoreDrawing(const std::uint8_t* cells, int refinement) {
    return guarded([&] {
        Field design(scene.width * refinement, scene.height * refinement);
        std::copy_n(cells, design.values.size(), design.values.begin());
        return score(std::move(design));
    });
}

Reply SceneSession::score(Field design) {
    scored = std::move(design);
    assessment = assess(scored, scene);
    work = {};
    bending.clear();
    if (assessment.score.supported) analyse(without(scored, assessment.floating));
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

// Energies and displacements of a design that is supported.
void SceneSession::analyse(const Field& design) {
    const Scene fine = withLoadsInUse(refined(scene, refinementOf(design, scene)));
    const std::vector<float> loads = loadRecords(fine);
    const std::vector<float> supports = supportRecords(fine);
    const std::vector<float> densities = toElementOrder(design);
    const std::vector<double> moduli(densities.begin(), densities.end());
    const auto cases = static_cast<std::size_t>(fine.loadCases);
    const std::size_t freedoms =
        2 * static_cast<std::size_t>(fine.width + 1) * static_cast<std::size_t>(fine.height + 1);
    std::vector<double> compliances(cases);
    std::vector<double> displacements(cases * freedoms);
    std::vector<double> energies(cases * moduli.size());
    _InitVoxamAnalysis(fine.width, fine.height, static_cast<int>(loads.size() / 5), loads.data(),
                       static_cast<int>(supports.size() / 5), supports.data(), fine.loadCases);
    const int status = _SolveVoxamAnalysis(moduli.data(), 0, nullptr, compliances.data(),
                                           displacements.data(), energies.data(), nullptr, nullptr);
    _DestroyVoxamAnalysis();
    if (status != VOXAM_ANALYSIS_SOLVED && status != VOXAM_ANALYSIS_LOOSE_PART) return;
    std::vector<float> sums(moduli.size());
    for (std::size_t i = 0; i < energies.size(); ++i) {
        sums[i % sums.size()] += static_cast<float>(energies[i]);
    }
    work = fromElementOrder(sums, design.width, design.height);
    const auto worst = std::max_element(compliances.begin(), compliances.end());
    const auto first = displacements.begin() +
                       (worst - compliances.begin()) * static_cast<std::ptrdiff_t>(freedoms);
    bending.assign(first, first + static_cast<std::ptrdiff_t>(freedoms));
}

Reply SceneSession::outline() const {
    return guarded([&] {
        if (pixels.empty()) throw std::logic_error("There is no design yet");
        Reply contours = Reply::array();
        // As the program does: at the level that keeps the volume.
        const double level = drawnDesign(material, running, drawnRefinement(running)).level;
        const Outline outline = traceOutline(material, running.refinement(), 1, level);
        for (const Contour& contour : outline.contours) {
            Reply corners = Reply::array();
            for (const OutlinePoint& corner : contour.corners) {
                corners.push_back(corner.x);
                corners.push_back(corner.y);
            }
            contours.push_back({{"hole", contour.hole}, {"corners", corners}});
        }
        return Reply{{"contours", contours}};
    });
}
