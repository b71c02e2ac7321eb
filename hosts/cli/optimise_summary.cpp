#include "optimise_summary.h"

#include <cstdio>

#include "console.h"
#include "design_exports.h"
#include "drawing/subtitles.h"
#include "format/text.h"
#include "interruption.h"
#include "time_table.h"

using namespace voxam;

namespace {

std::string whyNotAll(const OptimisationRun& run) {
    if (interruption() != 0) return ", then interrupted";
    if (!run.failure().empty()) return ", then stopped: " + run.failure();
    if (run.isConverged()) return formatted(", then the change was below %g", *run.options().until);
    const auto skipped = static_cast<std::size_t>(run.plannedIterations()) - run.records().size();
    return skipped > 0 ? formatted("; %zu could not run", skipped) : "";
}

void printResult(const OptimisationRun& run, const RunResult& result) {
    const IterationRecord& end = run.records().back();
    printRow("compliance", formatted("%.6g while optimising", end.compliance));
    printRow("", complianceText(result.assessment) +
                     " as drawn: " + describeDrawn(result.drawn, result.level));
    printRow("volume", formatted("%.1f %% of the picture, %.1f %% asked for", 100 * end.volume,
                                 100 * run.scene().volumeFraction));
    printRow("change", formatted("%.4f", end.change));
}

}  // namespace

void printSummary(const OptimisationRun& run, const RunResult& result, const Findings& warnings) {
    const Scene& scene = run.scene();
    std::printf("%s\n", scene.title.c_str());
    printRow("grid",
             formatted("%d x %d elements, picture %d x %d cells", scene.width, scene.height,
                       scene.refinement() * scene.width, scene.refinement() * scene.height));
    printRow("iterations", formatted("%zu of %d", run.records().size(), run.plannedIterations()) +
                               whyNotAll(run));
    if (!run.records().empty()) printResult(run, result);
    for (const std::string& warning : shownLines(warnings)) printRow("warning", warning);
    if (run.records().empty()) return;
    printRow("time", formatted("%.2f s", run.seconds()));
    printTimeTable(partTimes(run.records()));
}

std::string resultSubtitle(const OptimisationRun& run, const RunResult& result) {
    std::string text = runSubtitle(run.records().back(), run.scene().symmetry, &result.assessment);
    if (!run.failure().empty()) text += ",  then: " + run.failure();
    return text;
}
