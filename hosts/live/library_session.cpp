#include "library_session.h"

#include <algorithm>
#include <utility>

#include "checks/checks.h"
#include "format/refinement.h"
#include "format/timeline.h"

bool hasSamePlate(const Scene& one, const Scene& other) {
    return one.width == other.width && one.height == other.height &&
           one.subdivision == other.subdivision && one.meshFactor == other.meshFactor &&
           one.loadCases == other.loadCases;
}

void LibrarySession::optimise(std::shared_ptr<const Scene> scene, bool movesBlob,
                              std::uint64_t start) {
    const auto before = std::exchange(whole, std::move(scene));
    const bool goesOn =
        optimiser && before && hasSamePlate(*before, *whole) && start == startNumber;
    blobMoves = movesBlob;
    startNumber = start;
    // An update unsettles the optimiser for a few iterations.
    if (goesOn && isTold && *before == *whole) return;
    isTold = false;
    if (!goesOn) changesMade = 0;
    const Area blob = std::exchange(current, *whole).blob;
    for (std::size_t i = 0; i < std::min(changesMade, whole->timeline.size()); ++i)
        apply(whole->timeline[i], current);
    // An update starts the blob from the cells it names. One that was not edited stays where it
    // has got to.
    if (!goesOn || blob != current.blob) movedBlob.reset();
    if (goesOn) {
        optimiser->rescale(*whole);
        optimiser->update(sceneNow());
    } else {
        iterationCount = 0;
        optimiser.reset();  // its memory first
        optimiser.emplace(*whole);
    }
    isTold = true;
}

void LibrarySession::makeChanges() {
    const auto& timeline = whole->timeline;
    while (changesMade < timeline.size() && timeline[changesMade].iteration <= iterationCount + 1) {
        const Change& change = timeline[changesMade++];
        apply(change, current);
        if (change.has("blob")) movedBlob.reset();
        if (change.restart)
            optimiser->restart(sceneNow(), change.restart->keepsDesign);
        else
            optimiser->update(sceneNow());
    }
}

IterationOutcome LibrarySession::iterate(Frame& frame) {
    makeChanges();
    const bool moves = blobMoves && !current.blob.empty();
    const auto iterated = optimiser->iterate(current.penalty, moves);
    IterationOutcome outcome{iterated.message, {}};
    if (!outcome.text.empty()) return outcome;
    if (moves) movedBlob = optimiser->blob();
    frame.material = optimiser->material();
    frame.refinement = current.refinement();
    frame.blob = movedBlob;
    outcome.numbers.iteration = ++iterationCount;
    outcome.numbers.compliance = iterated.compliance;
    outcome.numbers.volume = mean(frame.material);
    outcome.numbers.change = iterated.change;
    outcome.numbers.times = iterated.times;
    frame.numbers = outcome.numbers;
    return outcome;
}

Scene LibrarySession::sceneNow() const {
    Scene scene = current;
    if (movedBlob) scene.blob = *movedBlob;
    return scene;
}

ScoreResult LibrarySession::score(const Scene& scene, const Field& design) {
    return {0, design, assess(design, withLoadsInUse(scene)), {}};
}

ScoreResult LibrarySession::scoreDesign(const Frame& frame, int refinement) const {
    const DrawnDesign drawn = drawnDesign(frame.material, current, refinement);
    ScoreResult result = score(current, drawn.design);
    const RunResult run{frame.numbers.compliance, frame.numbers.volume, result.design,
                        result.assessment, drawn.level};
    result.warnings = checkResult(run, current);
    return result;
}
