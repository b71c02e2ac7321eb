#include "run/scene_run.h"

#include <algorithm>
#include <string>
#include <utility>

#include "format/setting_keys.h"
#include "format/timeline.h"

namespace voxam::inline run {

namespace {

bool differInPenaltyAtMost(const Settings& one, const Settings& other) {
    const auto& keys = settingKeys();
    return std::all_of(keys.begin(), keys.end(), [&](const SettingKey& key) {
        return key.same(one, other) || std::string(key.name) == "penalty";
    });
}

}  // namespace

bool hasSamePlate(const Scene& one, const Scene& other) {
    return one.width == other.width && one.height == other.height &&
           one.subdivision == other.subdivision && one.meshFactor == other.meshFactor &&
           one.loadCaseCount() == other.loadCaseCount();
}

SceneRun::SceneRun(std::shared_ptr<const Scene> scene, int lastIteration)
    : whole(std::move(scene)), current(whole), last(lastIteration), optimiser(*whole) {}

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
    const bool moves = movesBlob && !current->blob.empty();
    const Optimiser::Outcome iterated = optimiser.iterate(current->penalty, moves);
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
    while (made < timeline.size() && timeline[made].iteration <= iteration) {
        isSent = false;
        const Change& change = applyNext();
        if (change.has("blob")) moved.reset();
        if (change.restart)
            optimiser.restart(*sceneToSend(), change.restart->keepsDesign);
        else if (change.concernsProblem())
            optimiser.update(*sceneToSend());
        isSent = true;
    }
}

const Change& SceneRun::applyNext() {
    const Change& change = whole->timeline[made];
    auto changed = std::make_shared<Scene>(*current);
    apply(change, *changed);
    current = std::move(changed);
    ++made;
    return change;
}

void SceneRun::edit(std::shared_ptr<const Scene> scene) {
    if (isSent && (scene == whole || hasSameProblem(*scene, *whole))) return;
    const auto before = std::exchange(current, scene);
    whole = std::move(scene);
    const bool wasSent = std::exchange(isSent, false);
    const std::size_t count = std::min(std::exchange(made, 0), whole->timeline.size());
    while (made < count) applyNext();
    isRefused = false;
    if (before->blob != current->blob) moved.reset();
    const bool isRescaled = optimiser.rescale(*whole);
    if (before->subdivision != current->subdivision || before->meshFactor != current->meshFactor)
        optimiser.restart(*sceneToSend(), false);
    else if (!wasSent || isRescaled || weightsOf(*before) != weightsOf(*current) ||
             !differInPenaltyAtMost(*before, *current))
        optimiser.update(*sceneToSend());
    isSent = true;
}

std::shared_ptr<const Scene> SceneRun::sceneToSend() const {
    if (!moved) return current;
    auto scene = std::make_shared<Scene>(*current);
    scene->blob = *moved;
    return scene;
}

}  // namespace voxam::inline run
