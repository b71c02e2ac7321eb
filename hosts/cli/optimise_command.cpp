#include "optimise_command.h"

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "animation.h"
#include "history.h"
#include "input_error.h"
#include "interruption.h"
#include "optimiser.h"
#include "output_file.h"
#include "picture.h"
#include "progress.h"
#include "scene_reader.h"
#include "time_table.h"

namespace fs = std::filesystem;

namespace {

// Iterations after the start and after each change in which a small change of the densities does
// not count: the library moves volume and stiffness of the void step by step.
constexpr int SETTLING_ITERATIONS = 20;

double mean(const Field& field) {
    return std::accumulate(field.values.begin(), field.values.end(), 0.0) /
           static_cast<double>(field.values.size());
}

[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...) {
    char text[160];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

class Run {
public:
    Run(const OptimiseOptions& runOptions, Scene scene)
        : options(runOptions),
          current(std::move(scene)),
          timeline(current.timeline),
          last(options.iterations.value_or(current.iterations)),
          scale(refinedPictureScale(current, current.refinement())),
          optimiser(current),
          progress(last) {
        if (!options.history.empty()) history.emplace(options.history);
    }

    void iterate() {
        int iteration = 1;
        while (iteration <= last && !converged && interruption() == 0) {
            makeChange(iteration);
            const auto outcome = optimiser.iterate(current.penalty, options.movesBlob);
            failure = outcome.message;
            if (failure.empty()) {
                record(iteration, outcome);
                ++iteration;
            } else if (!tellFailure(iteration)) {
                break;
            } else {
                iteration = timeline[nextChange].iteration;
            }
        }
        progress.finish();
    }

    /// The picture of the last design, if there was one, and the names of all files written.
    void drawResult() const {
        std::printf("\n");
        if (!records.empty()) writeResult();
        if (!options.frames.empty())
            std::printf("  frames             %zu in %s\n", records.size(), options.frames.c_str());
        if (!options.history.empty())
            std::printf("  history            %s\n", options.history.c_str());
    }

    void printSummary() const {
        std::printf("%s\n", current.title.c_str());
        const int refinement = current.refinement();
        std::printf("  grid               %d x %d elements, picture %d x %d cells\n", current.width,
                    current.height, refinement * current.width, refinement * current.height);
        std::printf("  iterations         %zu of %d%s\n", records.size(), last,
                    whyNotAll().c_str());
        if (records.empty()) return;
        const IterationRecord& end = records.back();
        std::printf("  compliance         %.6g\n", end.compliance);
        std::printf("  volume             %.1f %% of the picture, %.1f %% asked for\n",
                    100 * end.volume, 100 * current.volumeFraction);
        std::printf("  change             %.4f\n", end.change);
        std::printf("  time               %.2f s\n", seconds());
        printTimeTable(records);
    }

    int status() const {
        if (interruption() != 0) return 128 + interruption();
        return failure.empty() ? 0 : 1;
    }

private:
    void writeResult() const {
        if (!options.picture.empty()) {
            draw(options.picture);
            std::printf("  picture            %s\n", options.picture.c_str());
        }
        if (!animation.empty()) {
            writeFile(options.animation, animation.encodeGif());
            std::printf("  animation          %s (%zu frames)\n", options.animation.c_str(),
                        animation.size());
        }
        writeExports(options.exports, design, design.width / current.width);
    }

    void makeChange(int iteration) {
        if (nextChange == timeline.size() || timeline[nextChange].iteration != iteration) return;
        const Change& change = timeline[nextChange++];
        apply(change, current);
        if (change.restart)
            optimiser.restart(current, change.restart->keepsDesign);
        else if (change.concernsProblem())
            optimiser.update(current);
        progress.note(iteration, "changes: " + change.summary());
        lastChange = iteration;
    }

    void record(int iteration, const Optimiser::Outcome& outcome) {
        if (options.movesBlob) current.blob = optimiser.blob();
        design = optimiser.material();
        records.push_back(
            {iteration, outcome.compliance, mean(design), outcome.change, outcome.times});
        progress.show(records.back());
        if (history) history->add(records.back());
        if (!options.frames.empty()) draw(options.frames / formatted("frame-%04d.png", iteration));
        if (!options.animation.empty())
            animation.add(drawPicture(current, content(), animationScale(current)));
        const bool settled = iteration - lastChange >= SETTLING_ITERATIONS && !changesLeft();
        converged = settled && options.until && outcome.change < *options.until;
    }

    bool changesLeft() const {
        return nextChange < timeline.size() && timeline[nextChange].iteration <= last;
    }

    /// Returns whether a change to come may mend it.
    bool tellFailure(int iteration) {
        if (!changesLeft()) {
            std::fprintf(stderr, "voxam: %s: iteration %d: %s\n", options.scene.c_str(), iteration,
                         failure.c_str());
            return false;
        }
        const int next = timeline[nextChange].iteration;
        progress.note(iteration,
                      failure + formatted("; goes on with the change at iteration %d", next));
        return true;
    }

    std::string whyNotAll() const {
        if (interruption() != 0) return ", then interrupted";
        if (!failure.empty()) return ", then stopped: " + failure;
        if (converged) return formatted(", then the change was below %g", *options.until);
        const auto skipped = static_cast<std::size_t>(last) - records.size();
        return skipped > 0 ? formatted(", without %zu that failed", skipped) : "";
    }

    PictureContent content() const {
        const IterationRecord& shown = records.back();
        std::string subtitle = formatted("iteration %d,  compliance %.6g,  volume %.1f %%",
                                         shown.iteration, shown.compliance, 100 * shown.volume);
        if (!failure.empty()) subtitle += ",  then: " + failure;
        return {design, std::nullopt, current.title, subtitle};
    }

    void draw(const fs::path& file) const {
        writeFile(file, encodePicture(file, current, content(), scale));
    }

    double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }

    const OptimiseOptions& options;
    std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
    Scene current;  // with the changes that were made
    std::vector<Change> timeline;
    std::size_t nextChange = 0;
    int last;
    int scale;
    Optimiser optimiser;
    Progress progress;
    std::optional<History> history;
    int lastChange = 0;
    Animation animation;
    Field design;  // after the last of the records
    std::vector<IterationRecord> records;
    std::string failure;  // of the last iteration
    bool converged = false;
};

void prepareOutputs(const OptimiseOptions& options, const Scene& scene) {
    std::vector<Output> outputs = outputsOf(options.exports);
    outputs.push_back({"--picture", options.picture, PICTURE_ENDINGS});
    outputs.push_back({"--animation", options.animation, {".gif"}});
    outputs.push_back({"--history", options.history, {}});
    checkOutputs(outputs, scene.files);
    if (!options.frames.empty()) createDirectory(options.frames);
}

}  // namespace

int runOptimise(const OptimiseOptions& options) {
    Scene scene = readScene(options.scene);
    requireOptimisation(scene);
    if (options.movesBlob && scene.blob.empty())
        throw InputError(options.scene.string() + ": blob: no elements, needed for --blob");
    prepareOutputs(options, scene);
    watchForInterruption();
    Run run(options, std::move(scene));
    run.iterate();
    run.printSummary();
    run.drawResult();
    return run.status();
}
