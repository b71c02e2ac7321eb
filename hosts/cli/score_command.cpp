#include "score_command.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <numeric>
#include <string>

#include "checks/checks.h"
#include "console.h"
#include "design_exports.h"
#include "design_reader.h"
#include "drawing/picture.h"
#include "drawing/subtitles.h"
#include "drawing/whole_content.h"
#include "export/output_file.h"
#include "export/picture_file.h"
#include "export/scene_file.h"
#include "format/input_error.h"
#include "format/refinement.h"
#include "format/scene_reader.h"
#include "format/symmetry.h"
#include "format/text.h"
#include "report.h"
#include "verdict.h"
#include "view.h"
#include "warnings.h"

using namespace voxam;

namespace {

using ::complainOf;
using ::reportOn;

double percent(double part, double whole) { return whole > 0 ? 100 * part / whole : 0; }

/// What the values of a field are of: elements of the scene's grid, or parts of such.
const char* unitOf(const Field& field, const Scene& scene) {
    return refinementOf(field, scene) > 1 ? "cell" : "element";
}

std::string describeLoadCase(const Scene& scene, int loadCase) {
    const double weight = scene.weight(loadCase);
    return loadCaseLabel(scene, loadCase) + (weight == 1 ? "" : ", weight " + plainNumber(weight));
}

void printScene(const Scene& scene) {
    std::printf("%s\n", scene.title.c_str());
    printRow("grid", formatted("%d x %d elements", scene.width, scene.height));
    if (refinementOf(*scene.densities, scene) > 1)
        printRow("design",
                 formatted("%d x %d cells", scene.densities->width, scene.densities->height));
    const std::size_t inUse = scene.loadCasesInUse.size();
    const bool areAllInUse = inUse == scene.loadCases.size();
    printRow("load cases", std::to_string(scene.loadCaseCount()) +
                               (areAllInUse ? "" : formatted(", of which %zu in use", inUse)));
    if (!hasPlainLoadCases(scene))
        for (const int each : scene.loadCasesInUse) printRow("", describeLoadCase(scene, each));
    printRow("material used", materialText(*scene.densities, scene));
}

void printHardestWorking(const Field& energies, const Scene& scene) {
    std::vector<float> sorted = energies.values;
    std::sort(sorted.begin(), sorted.end(), std::greater<>());
    const double total = sum(energies);
    std::printf("\n");
    for (const int share : {1, 5, 10}) {
        const std::size_t count = (sorted.size() * static_cast<std::size_t>(share) + 99) / 100;
        const double part =
            std::accumulate(sorted.begin(), sorted.begin() + static_cast<long>(count), 0.0);
        printRow(formatted("hardest %d %%", share).c_str(),
                 formatted("%.1f %% of the compliance in ", percent(part, total)) +
                     counted(count, unitOf(energies, scene)));
    }
    const auto hardest = static_cast<int>(
        std::max_element(energies.values.begin(), energies.values.end()) - energies.values.begin());
    const int x = hardest % energies.width;
    const int y = hardest / energies.width;
    const int refinement = refinementOf(energies, scene);
    printRow((std::string("hardest ") + unitOf(energies, scene)).c_str(),
             formatted("%.1f %% of the compliance, at ", percent(energies.at(x, y), total)) +
                 placeText(1.0 * x / refinement, 1.0 * y / refinement) +
                 formatted(" (density %.3g)", scene.densities->at(x, y)));
}

void printVerdict(const Scene& scene, const Verdict& verdict) {
    const auto& [found, drawn, warnings, seconds] = verdict;
    if (found.problems.empty()) {
        printRow("compliance", formatted("%.6g", found.score.compliance));
        if (drawn)
            printRow("", complianceText(drawn->assessment) + " as drawn: " +
                             describeDrawn(drawn->drawn.design, drawn->drawn.level));
        printHardestWorking(found.score.energies, scene);
        return;
    }
    printRow("compliance", "none: not supported");
    for (const std::string& problem : shownLines(found.problems)) printRow("because", problem);
}

/// Tells on standard error what keeps the score from being plain.
void complainOf(const Verdict& verdict, const Findings& warnings,
                const std::filesystem::path& scene) {
    complainOf(warnings, scene);
    for (const std::string& problem : shownLines(verdict.found.problems))
        complain(nameOf(scene) + ": not supported: " + problem);
}

Report reportOn(const Scene& scene, const Verdict& verdict, const Findings& warnings,
                const Writer& writer) {
    Report report = reportOn("score", scene);
    const Field& design = *scene.densities;
    report["design"] = {{"width", design.width}, {"height", design.height}};
    report["volume"] = mean(design);
    report.update(reportOn(verdict));
    report["warnings"] = reportOn(warnings);
    report["files"] = reportOn(writer.files());
    report["seconds"] = verdict.seconds;
    return report;
}

/// Pictures, outlines and values.
void writeFiles(const ScoreOptions& options, const Scene& scene, const Verdict& verdict, int scale,
                Writer& writer) {
    const auto& [found, drawn, warnings, seconds] = verdict;
    PictureContent content{*scene.densities, std::nullopt, scene.title, "", found.floating};
    content.subtitle =
        scoreSubtitle(*scene.densities, scene, found, drawn ? &drawn->assessment : nullptr) +
        showView(options.view, found, scene, content);
    const Scene whole = wholeOf(scene);
    content = wholeOf(content, scene.symmetry);
    const PictureLayout size = pictureLayout(whole, scale);
    for (const std::filesystem::path& file : options.exports.pictures)
        writer.attempt([&] {
            writer.write("picture", file, encodePicture(file, whole, content, scale),
                         formatted("%d x %d pixels", size.width, size.height));
        });
    writeExports(writer, options.exports, *scene.densities, scene,
                 drawn ? drawn->drawn.level : 0.5);
    writeValues(writer, options.exports, *scene.densities, found, scene);
}

}  // namespace

int runScore(const ScoreOptions& options) {
    // 1. Everything that can be said before the score.
    if (options.isQuiet || options.isJson) silenceStandardOutput();
    Scene scene = readScene(options.scene, options.assignments);
    if (!options.design.empty()) readDesignInto(scene, options.design, "--design");
    requireScore(scene);
    checkView(options.view, scene);
    const bool withStates =
        needsStates(options.view) || options.isJson || !options.exports.values.empty();
    const std::filesystem::path name = scene.files.front();
    Findings warnings = warningsOf(checkBeforeScore(scene, withStates), name);
    scene = withLoadsInUse(std::move(scene));
    const int scale = options.scale.value_or(
        refinedPictureScale(wholeOf(scene), refinementOf(*scene.densities, scene)));
    if (!options.exports.pictures.empty()) checkPictureScale(wholeOf(scene), scale);
    checkOutputs(outputsOf(options.exports), scene.files);

    // 2. The score.
    const Verdict verdict = judge(scene, withStates);
    warnings.insert(warnings.end(), verdict.warnings.begin(), verdict.warnings.end());

    // 3. What it came to. A picture is left only by a score that was told.
    printScene(scene);
    printVerdict(scene, verdict);
    for (const std::string& warning : shownLines(warnings)) printRow("warning", warning);
    flushStandardOutput();
    complainOf(verdict, warnings, name);
    if (!outputsOf(options.exports).empty()) std::printf("\n");
    Writer writer;
    writeFiles(options, scene, verdict, scale, writer);
    if (options.isJson) print(reportOn(scene, verdict, warnings, writer));
    if (writer.hasFailed()) return ERROR_STATUS;
    return !verdict.found.problems.empty() || (options.isStrict && !warnings.empty()) ? 1 : 0;
}
