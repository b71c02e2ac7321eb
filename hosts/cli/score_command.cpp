#include "score_command.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <numeric>
#include <optional>
#include <string>

#include "assessment.h"
#include "checks.h"
#include "console.h"
#include "design_file.h"
#include "file_ending.h"
#include "input_error.h"
#include "output_file.h"
#include "picture.h"
#include "refinement.h"
#include "scene_reader.h"
#include "text.h"

namespace {

double sum(const Field& field) {
    return std::accumulate(field.values.begin(), field.values.end(), 0.0);
}

double percent(double part, double whole) { return whole > 0 ? 100 * part / whole : 0; }

std::string materialText(const Field& densities) {
    const auto elements = densities.values.size();
    return formatted("%.1f %%  (%.7g of %zu elements)",
                     percent(sum(densities), static_cast<double>(elements)), sum(densities),
                     elements);
}

void printScene(const Scene& scene) {
    std::printf("%s\n", scene.title.c_str());
    std::printf("  grid             %d x %d elements\n", scene.width, scene.height);
    if (refinementOf(*scene.densities, scene) > 1)
        std::printf("  design           %d x %d cells\n", scene.densities->width,
                    scene.densities->height);
    std::printf("  load cases       %d\n", scene.loadCases);
    std::printf("  material used    %s\n", materialText(*scene.densities).c_str());
}

void printHardestWorking(const Field& energies, const Field& densities, int refinement) {
    std::vector<float> sorted = energies.values;
    std::sort(sorted.begin(), sorted.end(), std::greater<>());
    const double total = sum(energies);
    std::printf("\n  hardest-working elements   share of the compliance\n");
    for (const int share : {1, 5, 10}) {
        const std::size_t count = (sorted.size() * static_cast<std::size_t>(share) + 99) / 100;
        const double part =
            std::accumulate(sorted.begin(), sorted.begin() + static_cast<long>(count), 0.0);
        std::printf("  %4d %% %10zu elements   %21.1f %%\n", share, count, percent(part, total));
    }
    const auto hardest = static_cast<int>(
        std::max_element(energies.values.begin(), energies.values.end()) - energies.values.begin());
    const int x = hardest % energies.width;
    const int y = hardest / energies.width;
    char place[64];
    std::snprintf(place, sizeof place, "at x %d, y %d (density %.3g)", x / refinement,
                  y / refinement, densities.at(x, y));
    std::printf("  the hardest %-24s %10.1f %%\n", place, percent(energies.at(x, y), total));
}

/// A design with greys in black and white, and what that is worth.
struct DrawnDesign {
    Field design;
    Assessment assessment;

    std::string compliance() const {
        return assessment.problems.empty() ? formatted("%.6g", assessment.score.compliance)
                                           : "not supported";
    }
};

/// None when the design is black and white and small enough to be scored as it is.
std::optional<DrawnDesign> asDrawn(const Scene& scene) {
    const Field& design = *scene.densities;
    const int refinement = drawnRefinement(scene, refinementOf(design, scene));
    DrawnDesign drawn{drawnDesign(design, scene, refinement), {}};
    if (drawn.design == design) return std::nullopt;
    drawn.assessment = assess(drawn.design, scene);
    return drawn;
}

std::string subtitle(const Scene& scene, const Assessment& found,
                     const std::optional<DrawnDesign>& drawn) {
    std::string text = found.problems.empty() ? formatted("compliance %.6g", found.score.compliance)
                                              : "not supported: " + lineOf(found.problems.front());
    if (drawn && found.problems.empty()) text += ", as drawn " + drawn->compliance();
    text += ",  material used " + materialText(*scene.densities);
    if (!found.floating.empty()) text += ",  left out: " + describe(found.floating);
    return text;
}

void drawDesign(const Scene& scene, const Assessment& found, const std::string& subtitle, int scale,
                const std::filesystem::path& file) {
    PictureContent content{*scene.densities, std::nullopt, scene.title, subtitle, found.floating};
    if (found.problems.empty()) content.energies = found.score.energies;
    writeFile(file, encodePicture(file, scene, content, scale));
    const PictureLayout size = pictureLayout(scene, scale);
    std::printf("  picture          %s (%d x %d pixels)\n", onOneLine(file.string()).c_str(),
                size.width, size.height);
}

void printAssessment(const Scene& scene, const Assessment& found,
                     const std::optional<DrawnDesign>& drawn) {
    if (!found.floating.empty())
        std::printf("  left out         %s\n", describe(found.floating).c_str());
    if (found.problems.empty()) {
        std::printf("  compliance       %.6g\n", found.score.compliance);
        if (drawn)
            std::printf("                   %s as drawn, in black and white on %d x %d elements\n",
                        drawn->compliance().c_str(), drawn->design.width, drawn->design.height);
        printHardestWorking(found.score.energies, *scene.densities,
                            refinementOf(*scene.densities, scene));
        return;
    }
    std::printf("  compliance       none: not supported\n");
    for (const Finding& problem : found.problems)
        std::printf("  because          %s\n", lineOf(problem).c_str());
}

void readDesignInto(Scene& scene, const std::filesystem::path& file) {
    checkEnding("--design", file, DESIGN_ENDINGS);
    scene.densities = readDesign(file, scene.width, scene.height);
    scene.files.push_back(file);
}

void prepareOutputs(const ScoreOptions& options, const Scene& scene, int scale) {
    if (!options.picture.empty()) checkPictureScale(scene, scale);
    std::vector<Output> outputs = outputsOf(options.exports);
    outputs.push_back({"--picture", options.picture, PICTURE_ENDINGS});
    checkOutputs(outputs, scene.files);
}

}  // namespace

int runScore(const ScoreOptions& options) {
    // 1. Everything that can be said before the score.
    Scene scene = readScene(options.scene);
    if (!options.design.empty()) readDesignInto(scene, options.design);
    requireScore(scene);
    for (const Finding& finding : checkBeforeScore(scene))
        throw InputError(options.scene.string() + ": " + lineOf(finding));
    const int refinement = refinementOf(*scene.densities, scene);
    const int scale = options.scale.value_or(refinedPictureScale(scene, refinement));
    prepareOutputs(options, scene, scale);

    // 2. The score.
    const Assessment found = assess(*scene.densities, scene);
    const auto drawn = asDrawn(scene);

    // 3. What it came to.
    printScene(scene);
    printAssessment(scene, found, drawn);
    flushStandardOutput();
    const bool hasWarnings = !found.floating.empty();
    if (hasWarnings)
        complain(options.scene.string() + ": warning: densities: " + describe(found.floating) +
                 "; left out");
    if (!options.picture.empty() || !options.exports.outlines.empty()) std::printf("\n");
    if (!options.picture.empty())
        drawDesign(scene, found, subtitle(scene, found, drawn), scale, options.picture);
    writeExports(options.exports, *scene.densities, refinement);
    return !found.problems.empty() || (options.isStrict && hasWarnings) ? 1 : 0;
}
