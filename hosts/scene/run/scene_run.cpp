#include "run/scene_run.h"

#include <algorithm>
#include <utility>

#include "format/timeline.h"

namespace {

bool differInPenaltyAtMost(const Settings& one, Settings other) {
    other.penalty = one.penalty;
    return one == other;
}

}  // namespace

bool hasSamePlate(const Scene& one, const Scene& other) {
    return one.width == other.width && one.height == other.height &&
           one.subdivision == other.subdivision && one.meshFactor == other.meshFactor &&
           one.loadCases == other.loadCases;
}

SceneRun::SceneRun(std::shared_ptr<const Scene> scene, int lastIteration)
    : whole(std::move(scene)), current(*whole), last(lastIteration), optimiser(*whole) {}

std::optional<int> SceneRun::next() const {
    if (!isRefused) return upcoming <= last ? std::optional(upcoming) : std::nullopt;
    if (hasChangesLeft()) return whole->timeline[made].iteration;
    return std::nullopt;
}

bool SceneRun::hasChangesLeft() const {
    return made < whole->timeline.size() && whole->timeline[made].iteration <= last;
}

SceneRun::Outcome SceneRun::iterate(bool movesBlob) {
    const int iteration = next().value();
    makeChanges(iteration);
    const bool moves = movesBlob && !current.blob.empty();
    const Optimiser::Outcome iterated = optimiser.iterate(current.penalty, moves);
    Outcome outcome;
    outcome.record.iteration = upcoming = iteration;
    outcome.refusal = iterated.message;
    isRefused = !outcome.refusal.empty();
    if (isRefused) return outcome;
    ++upcoming;
    design = optimiser.material();
    if (moves) moved = optimiser.blob();
    outcome.record.compliance = iterated.compliance;
    outcome.record.volume = mean(design);
    outcome.record.change = iterated.change;
    outcome.record.times = iterated.times;
    return outcome;
}

void SceneRun::makeChanges(int iteration) {
    const auto& timeline = whole->timeline;
    for (; made < timeline.size() && timeline[made].iteration <= iteration; ++made) {
        const Change& change = timeline[made];
        apply(change, current);
        if (change.has("blob")) moved.reset();
        if (change.restart)
            optimiser.restart(sceneToTell(), change.restart->keepsDesign);
        else if (change.concernsProblem())
            optimiser.update(sceneToTell());
    }
}

void SceneRun::edit(std::shared_ptr<const Scene> scene) {
    const auto before = std::exchange(whole, std::move(scene));
    if (isTold && *before == *whole) return;
    const bool wasTold = std::exchange(isTold, false);
    const Settings told = std::exchange(current, *whole);
    made = std::min(made, whole->timeline.size());
    for (std::size_t i = 0; i < made; ++i) apply(whole->timeline[i], current);
    isRefused = false;
    if (told.blob != current.blob) moved.reset();
    const bool isRescaled = optimiser.rescale(*whole);
    if (!wasTold || isRescaled || !differInPenaltyAtMost(told, current))
        optimiser.update(sceneToTell());
    isTold = true;
}

Scene SceneRun::sceneToTell() const {
    Scene scene = current;
    if (moved) scene.blob = *moved;
    return scene;
}
