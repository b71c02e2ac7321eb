#include "optimise_summary.h"

#include <cstdio>

#include "interruption.h"
#include "text.h"
#include "time_table.h"

namespace {

std::string whyNotAll(const OptimisationRun& run) {
    if (interruption() != 0) return ", then interrupted";
    if (!run.failure().empty()) return ", then stopped: " + run.failure();
    if (run.isConverged()) return formatted(", then the change was below %g", *run.options().until);
    const auto skipped = static_cast<std::size_t>(run.plannedIterations()) - run.records().size();
    return skipped > 0 ? formatted(", without %zu that failed", skipped) : "";
}

std::string asDrawn(const RunResult& result) {
    const Assessment& drawn = result.assessment;
    return drawn.problems.empty() ? formatted("%.6g", drawn.score.compliance) : "not supported";
}

void printResult(const OptimisationRun& run, const RunResult& result) {
    const IterationRecord& end = run.records().back();
    std::printf("  compliance         %.6g while optimising\n", end.compliance);
    std::printf("                     %s as drawn, in black and white on %d x %d elements\n",
                asDrawn(result).c_str(), result.drawn.width, result.drawn.height);
    std::printf("  volume             %.1f %% of the picture, %.1f %% asked for\n",
                100 * end.volume, 100 * run.scene().volumeFraction);
    std::printf("  change             %.4f\n", end.change);
}

}  // namespace

void printSummary(const OptimisationRun& run, const RunResult& result, const Findings& warnings) {
    const Scene& scene = run.scene();
    std::printf("%s\n", scene.title.c_str());
    std::printf("  grid               %d x %d elements, picture %d x %d cells\n", scene.width,
                scene.height, scene.refinement() * scene.width, scene.refinement() * scene.height);
    std::printf("  iterations         %zu of %d%s\n", run.records().size(), run.plannedIterations(),
                whyNotAll(run).c_str());
    if (!run.records().empty()) printResult(run, result);
    for (const Finding& warning : warnings)
        std::printf("  warning            %s\n", onOneLine(lineOf(warning)).c_str());
    if (run.records().empty()) return;
    std::printf("  time               %.2f s\n", run.seconds());
    printTimeTable(run.records());
}

std::string resultSubtitle(const OptimisationRun& run, const RunResult& result) {
    const IterationRecord& end = run.records().back();
    std::string text =
        formatted("iteration %d,  compliance %.6g, as drawn %s,  volume %.1f %%", end.iteration,
                  end.compliance, asDrawn(result).c_str(), 100 * end.volume);
    if (!run.failure().empty()) text += ",  then: " + run.failure();
    return text;
}
