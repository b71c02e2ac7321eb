#include "optimisation_run.h"

#include <utility>

#include "console.h"
#include "format/text.h"
#include "format/timeline.h"
#include "interruption.h"
#include "warnings.h"

using namespace voxam;

namespace {

// Iterations after the start and after each change in which a small change of the densities does
// not count: the library moves volume and stiffness of the void step by step.
constexpr int SETTLING_ITERATIONS = 20;

}  // namespace

OptimisationRun::OptimisationRun(const OptimiseOptions& options, const Scene& scene)
    : given(options),
      timeline(scene.timeline),
      recordedScene(scene),
      last(given.iterations.value_or(scene.iterations)),
      progress(last),
      run(std::make_shared<const Scene>(scene), last) {
    if (!given.history.empty()) history.emplace(given.history);
}

void OptimisationRun::iterate(const std::function<void()>& afterEach) {
    try {
        iterateToTheEnd(afterEach);
    } catch (const std::exception& error) {
        failed = error.what();
        progress.closeLine();
        throw;
    }
    progress.finish();
}

void OptimisationRun::iterateToTheEnd(const std::function<void()>& afterEach) {
    while (run.next() && !converged && interruption() == 0) {
        const SceneRun::Outcome outcome = iterateOnce();
        failed = explainedRefusal(outcome.refusal,
                                  !recorded.empty() && lastChange != outcome.record.iteration);
        if (failed.empty()) {
            record(outcome.record);
            afterEach();
        } else {
            reportFailure(outcome.record.iteration);
        }
    }
}

SceneRun::Outcome OptimisationRun::iterateOnce() {
    const std::size_t first = run.changesMade();
    SceneRun::Outcome outcome = run.iterate(given.movesBlob);
    for (std::size_t i = first; i < run.changesMade(); ++i) {
        progress.note(outcome.record.iteration, "changes: " + timeline[i].summary());
        lastChange = outcome.record.iteration;
        changed = true;
    }
    return outcome;
}

void OptimisationRun::record(const IterationRecord& done) {
    if (std::exchange(changed, false)) recordedScene = run.scene();
    if (run.movedBlob()) recordedScene.blob = *run.movedBlob();
    recorded.push_back(done);
    progress.show(done);
    if (history) history->add(done);
    const bool settled =
        done.iteration - lastChange >= SETTLING_ITERATIONS && !run.hasChangesLeft();
    converged = settled && given.until && done.change < *given.until;
}

/// Says where the run resumes, or why it ends.
void OptimisationRun::reportFailure(int iteration) {
    if (const auto next = run.next()) {
        progress.note(iteration,
                      failed + formatted("; resumes with the change at iteration %d", *next));
        return;
    }
    progress.closeLine();
    complain(nameOf(given.scene) + formatted(": iteration %d: ", iteration) + failed);
}

double OptimisationRun::seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}
