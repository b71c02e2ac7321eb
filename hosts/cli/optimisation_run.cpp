#include "optimisation_run.h"

#include <utility>

#include "console.h"
#include "format/text.h"
#include "format/timeline.h"
#include "interruption.h"
#include "warnings.h"

namespace {

// Iterations after the start and after each change in which a small change of the densities does
// not count: the library moves volume and stiffness of the void step by step.
constexpr int SETTLING_ITERATIONS = 20;

}  // namespace

OptimisationRun::OptimisationRun(const OptimiseOptions& options, const Scene& scene)
    : given(options),
      current(scene),
      recordedScene(scene),
      timeline(scene.timeline),
      last(given.iterations.value_or(scene.iterations)),
      progress(last),
      optimiser(scene) {
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
    int iteration = 1;
    while (iteration <= last && !converged && interruption() == 0) {
        makeChange(iteration);
        const auto outcome = optimiser.iterate(current.penalty, given.movesBlob);
        failed = explainedRefusal(outcome.message, !recorded.empty() && lastChange != iteration);
        if (failed.empty()) {
            record(iteration, outcome);
            afterEach();
            ++iteration;
        } else if (tellFailure(iteration)) {
            iteration = timeline[nextChange].iteration;
        } else {
            break;
        }
    }
}

void OptimisationRun::makeChange(int iteration) {
    if (nextChange == timeline.size() || timeline[nextChange].iteration != iteration) return;
    const Change& change = timeline[nextChange++];
    apply(change, current);
    if (change.restart)
        optimiser.restart(current, change.restart->keepsDesign);
    else if (change.concernsProblem())
        optimiser.update(current);
    progress.note(iteration, "changes: " + change.summary());
    lastChange = iteration;
    changed = true;
}

void OptimisationRun::record(int iteration, const Optimiser::Outcome& outcome) {
    if (given.movesBlob) current.blob = optimiser.blob();
    if (std::exchange(changed, false)) recordedScene = current;
    recordedScene.blob = current.blob;
    design = optimiser.material();
    recorded.push_back(
        {iteration, outcome.compliance, mean(design), outcome.change, outcome.times});
    progress.show(recorded.back());
    if (history) history->add(recorded.back());
    const bool settled = iteration - lastChange >= SETTLING_ITERATIONS && !changesLeft();
    converged = settled && given.until && outcome.change < *given.until;
}

bool OptimisationRun::changesLeft() const {
    return nextChange < timeline.size() && timeline[nextChange].iteration <= last;
}

/// Returns whether a change to come may mend it.
bool OptimisationRun::tellFailure(int iteration) {
    if (!changesLeft()) {
        progress.closeLine();
        complain(nameOf(given.scene) + formatted(": iteration %d: ", iteration) + failed);
        return false;
    }
    progress.note(iteration, failed + formatted("; goes on with the change at iteration %d",
                                                timeline[nextChange].iteration));
    return true;
}

double OptimisationRun::seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}
