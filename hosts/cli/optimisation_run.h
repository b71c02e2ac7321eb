#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "format/scene.h"
#include "history.h"
#include "options.h"
#include "progress.h"
#include "run/iteration_record.h"
#include "run/scene_run.h"

using namespace voxam;

/// The iterations of an optimisation, with the changes of its timeline.
class OptimisationRun {
public:
    /// Reports the start on standard output. Throws std::runtime_error if there is not enough
    /// memory.
    OptimisationRun(const OptimiseOptions& options, const Scene& scene);

    /// Iterates until the end, or until the library refuses the last iteration. Calls `afterEach`
    /// after each successful iteration. An exception, also of `afterEach`, keeps the records.
    void iterate(const std::function<void()>& afterEach);

    const OptimiseOptions& options() const { return given; }
    /// The scene with the changes that were made before the last of the records.
    const Scene& scene() const { return recordedScene; }
    const std::vector<IterationRecord>& records() const { return recorded; }
    /// The material after the last of the records, at the resolution of the picture.
    const Field& material() const { return run.material(); }
    /// Why the run ended early: the library's text if the last iteration failed, or the text of the
    /// exception.
    const std::string& failure() const { return failed; }
    int plannedIterations() const { return last; }
    bool isConverged() const { return converged; }
    double seconds() const;

private:
    void iterateToTheEnd(const std::function<void()>& afterEach);
    SceneRun::Outcome iterateOnce();
    void record(const IterationRecord& done);
    void reportFailure(int iteration);

    const OptimiseOptions& given;
    std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
    std::vector<Change> timeline;
    Scene recordedScene;  // as it was in the last of the records
    int last;
    Progress progress;
    SceneRun run;
    std::optional<History> history;
    int lastChange = 0;
    bool changed = false;  // since the last of the records
    std::vector<IterationRecord> recorded;
    std::string failed;
    bool converged = false;
};
