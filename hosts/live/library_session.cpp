#include "library_session.h"

#include <utility>

#include "checks/checks.h"
#include "format/refinement.h"

using namespace voxam;

void LibrarySession::optimise(std::shared_ptr<const Scene> scene, bool movesBlob,
                              std::uint64_t start) {
    const bool goesOn = run && hasSamePlate(*whole, *scene) && start == startNumber;
    whole = std::move(scene);
    blobMoves = movesBlob;
    startNumber = start;
    if (goesOn) return run->edit(whole);
    run.reset();  // its memory first
    run.emplace(whole);
}

IterationOutcome LibrarySession::iterate(Frame& frame) {
    if (!run->next()) return {refusal, {}, std::nullopt};
    SceneRun::Outcome iterated = run->iterate(blobMoves);
    refusal = std::move(iterated.refusal);
    const IterationNumbers numbers{iterated.record, 0};
    if (!refusal.empty()) return {refusal, numbers, run->next()};
    frame.material = run->material();
    frame.refinement = refinementOf(frame.material, run->scene());
    frame.blob = run->movedBlob();
    frame.numbers = numbers;
    return {{}, numbers, std::nullopt};
}

ScoreResult LibrarySession::score(const std::shared_ptr<const Scene>& scene, const Field& design,
                                  const ViewChoice& choice) {
    ScoreResult result{0, design, assess(design, withLoadsInUse(*scene), needsStates(choice)), {}};
    result.scene = scene;
    if (needsStates(choice) && result.isSupported())
        result.view.states = std::make_shared<const std::vector<PlateState>>(
            std::exchange(result.assessment.states, {}));
    result.view = view(result, choice);
    return result;
}

DesignView LibrarySession::view(const ScoreResult& scored, const ViewChoice& choice) {
    const Scene& scene = *scored.scene;
    auto states = scored.view.states;
    if (!scored.isSupported() || choice.view == View::MATERIAL) return {states, {}};
    if (!needsStates(choice)) {
        ViewedField energies{choice, shownCases(choice, scene), scored.assessment.score.energies};
        return {states, std::make_shared<const ViewedField>(std::move(energies))};
    }
    if (!states)
        states = std::make_shared<const std::vector<PlateState>>(
            assess(scored.design, withLoadsInUse(scene), true).states);
    return {states, std::make_shared<const ViewedField>(viewOf(choice, *states, scene))};
}

ScoreResult LibrarySession::scoreSaved(const std::shared_ptr<const Scene>& scene,
                                       const Field& design, const ViewChoice& choice) {
    ScoreResult result = score(scene, design, choice);
    // The compliance with greys is not known any more.
    result.warnings = checkResult(
        {result.assessment.score.compliance, mean(design), design, result.assessment}, *scene);
    return result;
}

ScoreResult LibrarySession::scoreDesign(const Frame& frame, int refinement,
                                        const ViewChoice& choice) const {
    const auto scene = std::make_shared<const Scene>(run->scene());
    const DrawnDesign drawn =
        refinement > 0
            ? drawnDesign(frame.material, *scene, refinement, scene->volumeFraction)
            : drawnDesign(frame.material, *scene, drawnRefinement(*scene, frame.refinement));
    ScoreResult result = score(scene, drawn.design, choice);
    // Beside a drawing, the design in black and white has the volume whatever the greys have.
    const double volume = refinement > 0 ? mean(result.design) : frame.numbers.volume;
    const RunResult of{frame.numbers.compliance, volume, result.design, result.assessment,
                       drawn.level};
    result.warnings = checkResult(of, *scene);
    return result;
}
