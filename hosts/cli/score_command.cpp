#include "score_command.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <numeric>
#include <string>

#include "design_file.h"
#include "file_ending.h"
#include "game.h"
#include "output_file.h"
#include "picture.h"
#include "refinement.h"
#include "scene_reader.h"

namespace {

double sum(const Field& field) {
    return std::accumulate(field.values.begin(), field.values.end(), 0.0);
}

double percent(double part, double whole) { return whole > 0 ? 100 * part / whole : 0; }

std::string materialText(const Field& densities) {
    char text[96];
    const auto elements = densities.values.size();
    std::snprintf(text, sizeof text, "%.1f %%  (%.7g of %zu elements)",
                  percent(sum(densities), static_cast<double>(elements)), sum(densities), elements);
    return text;
}

void printScene(const Scene& scene) {
    std::printf("%s\n", scene.title.c_str());
    std::printf("  grid             %d x %d elements\n", scene.width, scene.height);
    if (scene.densities->width > scene.width)
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

std::string subtitle(const Scene& scene, const Score& score) {
    char text[64];
    std::snprintf(text, sizeof text, "compliance %.6g", score.compliance);
    return (score.supported ? text : std::string("not supported: free to move")) +
           ",  material used " + materialText(*scene.densities);
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
    Scene scene = readScene(options.scene);
    if (!options.design.empty()) readDesignInto(scene, options.design);
    requireScore(scene);
    const int refinement = refinementOf(*scene.densities, scene);
    const int scale = options.scale.value_or(refinedPictureScale(scene, refinement));
    prepareOutputs(options, scene, scale);

    const Score score = Game(refined(scene, refinement)).score(*scene.densities);

    if (!options.picture.empty()) {
        PictureContent content{*scene.densities, std::nullopt, scene.title, subtitle(scene, score)};
        if (score.supported) content.energies = score.energies;
        writeFile(options.picture, encodePicture(options.picture, scene, content, scale));
    }

    printScene(scene);
    if (score.supported) {
        std::printf("  compliance       %.6g\n", score.compliance);
        printHardestWorking(score.energies, *scene.densities, refinement);
    } else {
        std::printf("  compliance       none: not supported, the plate is free to move\n");
    }
    if (!options.picture.empty() || !options.exports.outlines.empty()) std::printf("\n");
    if (!options.picture.empty()) {
        const PictureLayout size = pictureLayout(scene, scale);
        std::printf("  picture          %s (%d x %d pixels)\n", options.picture.c_str(), size.width,
                    size.height);
    }
    writeExports(options.exports, *scene.densities, refinement);
    return score.supported ? 0 : 1;
}
