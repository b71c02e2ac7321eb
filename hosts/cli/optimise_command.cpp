#include "optimise_command.h"

#include <cstdio>
#include <regex>
#include <string>
#include <vector>

#include "checks/checks.h"
#include "console.h"
#include "design_exports.h"
#include "drawing/picture.h"
#include "drawing/subtitles.h"
#include "drawing/whole_content.h"
#include "export/animation.h"
#include "export/file_ending.h"
#include "export/output_file.h"
#include "export/picture_file.h"
#include "export/scene_file.h"
#include "format/input_error.h"
#include "format/refinement.h"
#include "format/scene_reader.h"
#include "format/symmetry.h"
#include "format/text.h"
#include "interruption.h"
#include "optimisation_run.h"
#include "optimise_summary.h"
#include "report.h"
#include "time_table.h"
#include "view.h"
#include "warnings.h"

using namespace voxam;

namespace fs = std::filesystem;

namespace {

using ::reportOn;

fs::path frameFile(const OptimiseOptions& options, int iteration) {
    return options.frames / formatted("frame-%04d.png", iteration);
}

/// Frames would replace a file of this place and name.
bool isFrame(const fs::path& file, const OptimiseOptions& options) {
    static const std::regex name("frame-[0-9]{4,}\\.png");
    return isSamePlace(resolved(file).parent_path(), options.frames) &&
           std::regex_match(resolved(file).filename().string(), name);
}

/// A directory that is there, or a name that can be no slip for that of a file.
void checkFrames(const OptimiseOptions& options) {
    std::error_code error;
    if (!fs::is_directory(options.frames, error) && options.frames.has_extension())
        for (const char* ending : {".png", ".svg", ".gif", ".csv", ".json"})
            if (fileEnding(options.frames) == ending)
                throw InputError("--frames: " + nameOf(options.frames) +
                                 ": expected a directory, which gets a file for each iteration");
    checkDirectory(options.frames);
    checkOutput(frameFile(options, Scene::MAX_ITERATIONS), {}, options.frames);
}

void prepareOutputs(const OptimiseOptions& options, const Scene& scene) {
    std::vector<Output> outputs = outputsOf(options.exports);
    outputs.push_back({"--animation", options.animation, {".gif"}});
    outputs.push_back({"--history", options.history, {".csv"}});
    if (!options.frames.empty()) checkFrames(options);
    checkOutputs(outputs, scene.files, options.frames);
    if (options.frames.empty()) return;
    std::vector<fs::path> others = scene.files;
    for (const Output& output : outputs)
        if (!output.file.empty()) others.push_back(output.file);
    for (const fs::path& file : others)
        if (isFrame(file, options) || isSamePlace(file, options.frames))
            throw InputError("--frames: a frame would replace " + nameOf(file));
    createDirectory(options.frames);
}

PictureContent contentOf(const OptimisationRun& run, const std::string& subtitle) {
    return wholeOf(PictureContent{run.material(), std::nullopt, run.scene().title, subtitle},
                   run.scene().symmetry);
}

std::vector<std::uint8_t> encoded(const OptimisationRun& run, const PictureContent& content,
                                  const fs::path& file) {
    const Scene whole = wholeOf(run.scene());
    return encodePicture(file, whole, content,
                         refinedPictureScale(whole, run.scene().refinement()));
}

RgbImage animated(const OptimisationRun& run, const PictureContent& content) {
    const Scene whole = wholeOf(run.scene());
    return drawPicture(whole, content, animationScale(whole));
}

/// The last design as the view shows it, and what of it no support holds as drawn.
PictureContent contentOf(const OptimisationRun& run, const RunResult& result) {
    const Scene scene = withLoadsInUse(run.scene());
    const bool showsDrawn = run.options().view.view != "material";
    PictureContent content{showsDrawn ? result.drawn : run.material(), std::nullopt,
                           run.scene().title, "", result.assessment.floating};
    content.subtitle = resultSubtitle(run, result) +
                       showView(run.options().view, result.assessment, scene, content);
    return wholeOf(content, run.scene().symmetry);
}

/// What was drawn during the run.
struct Drawings {
    std::size_t frames = 0;  ///< files that were written
    Animation animation;
};

/// Draws what is drawn after each iteration.
void drawIteration(const OptimisationRun& run, const OptimiseOptions& options, Drawings& drawings) {
    const std::string subtitle = runSubtitle(run.records().back(), run.scene().symmetry);
    if (!options.frames.empty()) {
        const fs::path file = frameFile(options, run.records().back().iteration);
        writeFile(file, encoded(run, contentOf(run, subtitle), file));
        ++drawings.frames;
    }
    if (!options.animation.empty()) drawings.animation.add(animated(run, contentOf(run, subtitle)));
}

bool wantsStates(const OptimiseOptions& options) {
    return needsStates(options.view) || options.isJson || !options.exports.values.empty();
}

/// Scores the last design in black and white.
RunResult resultOf(const OptimisationRun& run) {
    const Scene scene = withLoadsInUse(run.scene());
    RunResult result;
    result.compliance = run.records().back().compliance;
    result.volume = run.records().back().volume;
    DrawnDesign drawn = drawnDesign(run.material(), scene, drawnRefinement(scene));
    result.level = drawn.level;
    result.drawn = std::move(drawn.design);
    result.assessment = assess(result.drawn, scene, wantsStates(run.options()));
    return result;
}

/// Writes what is written at the end, and tells the names of all files.
void writeResult(const OptimisationRun& run, const RunResult& result,
                 const OptimiseOptions& options, Drawings& drawings, Writer& writer) {
    std::printf("\n");
    if (!run.records().empty()) {
        writeExports(writer, options.exports, run.material(), run.scene(), result.level);
        writeValues(writer, options.exports, result.drawn, result.assessment, run.scene());
        const PictureContent content = contentOf(run, result);
        for (const fs::path& file : options.exports.pictures)
            writer.attempt([&] { writer.write("picture", file, encoded(run, content, file)); });
        if (!options.animation.empty())
            writer.attempt([&] {
                drawings.animation.replaceLast(animated(run, content));
                writer.write("animation", options.animation, drawings.animation.encodeGif(),
                             counted(drawings.animation.size(), "frame"));
            });
    }
    if (!options.frames.empty())
        writer.report("frames", options.frames, counted(drawings.frames, "file"));
    if (!options.history.empty()) writer.report("history", options.history, "");
}

Report reportOn(const OptimisationRun& run, const RunResult& result, const Findings& warnings,
                const Writer& writer) {
    Report report = reportOn("optimise", run.scene());
    report["iterations"] = run.records().size();
    report["failure"] = run.failure().empty() ? Report(nullptr) : Report(run.failure());
    if (!run.records().empty()) {
        report["whileOptimising"] = {{"compliance", result.compliance},
                                     {"volume", result.volume},
                                     {"change", run.records().back().change}};
        report["asDrawn"] = reportOn(result.assessment);
        report["asDrawn"].update({{"volume", mean(result.drawn)},
                                  {"level", result.level},
                                  {"width", result.drawn.width},
                                  {"height", result.drawn.height}});
        for (const PartTime& part : partTimes(run.records()))
            report["medianMilliseconds"][part.name] = part.median;
    }
    report["warnings"] = reportOn(warnings);
    report["files"] = reportOn(writer.files());
    report["seconds"] = run.seconds();
    return report;
}

int statusOf(const OptimisationRun& run, const RunResult& result, bool hasWarnings,
             const Writer& writer) {
    if (writer.hasFailed()) return ERROR_STATUS;
    if (interruption() != 0) return 128 + interruption();
    const bool hasValues = result.assessment.problems.empty();
    if (!run.options().exports.values.empty() && !hasValues) return 1;
    return !run.failure().empty() || (run.options().isStrict && hasWarnings) ? 1 : 0;
}

}  // namespace

int runOptimise(const OptimiseOptions& options) {
    // 1. Everything that can be said before the run.
    if (options.isQuiet || options.isJson) silenceStandardOutput();
    const Scene scene = readScene(options.scene, options.assignments);
    const fs::path& name = scene.files.front();
    requireOptimisation(scene);
    checkView(options.view, scene);
    if (options.movesBlob && scene.blob.empty())
        throw InputError(nameOf(name) + ": blob: no elements, needed for --blob");
    Findings warnings = warningsOf(checkBeforeOptimisation(scene, wantsStates(options)), name);
    prepareOutputs(options, scene);
    complainOf(warnings, name);

    // 2. The run.
    watchForInterruption();
    OptimisationRun run(options, scene);
    Drawings drawings;
    Writer writer;
    writer.attempt([&] { run.iterate([&] { drawIteration(run, options, drawings); }); });

    // 3. What it came to.
    RunResult result;
    if (!run.records().empty()) {
        result = resultOf(run);
        const Findings found = checkResult(result, run.scene());
        complainOf(found, name);
        warnings.insert(warnings.end(), found.begin(), found.end());
    }
    printSummary(run, result, warnings);
    writeResult(run, result, options, drawings, writer);
    if (options.isJson) print(reportOn(run, result, warnings, writer));
    return statusOf(run, result, !warnings.empty(), writer);
}
