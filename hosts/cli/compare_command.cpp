#include "compare_command.h"

#include <algorithm>
#include <cstdio>

#include "checks/checks.h"
#include "console.h"
#include "design_reader.h"
#include "drawing/picture.h"
#include "drawing/subtitles.h"
#include "export/design_file.h"
#include "export/file_ending.h"
#include "export/output_file.h"
#include "export/png_image.h"
#include "export/scene_file.h"
#include "format/input_error.h"
#include "format/refinement.h"
#include "format/scene_reader.h"
#include "format/symmetry.h"
#include "format/text.h"
#include "report.h"
#include "verdict.h"
#include "warnings.h"

using namespace voxam;

namespace {

using ::reportOn;

namespace fs = std::filesystem;

struct Compared {
    fs::path file;
    Scene scene;
    Findings warnings;  ///< about the scene, without its design
    Verdict verdict;
    std::size_t rank = 0;  ///< from 1, the stiffest as drawn

    double volume() const { return mean(*scene.densities); }
    bool isSupportedAsDrawn() const { return verdict.asDrawn().problems.empty(); }
    double complianceAsDrawn() const { return verdict.asDrawn().score.compliance; }
};

Compared compared(const fs::path& file, const CompareOptions& options) {
    const auto& endings = DESIGN_ENDINGS;
    const bool isDesign =
        std::find(endings.begin(), endings.end(), fileEnding(file)) != endings.end();
    if (options.scene.empty() && isDesign)
        throw InputError(nameOf(file) + ": is a design; name its scene with --scene");
    Scene scene = readScene(options.scene.empty() ? file : options.scene);
    const fs::path name = options.scene.empty() ? scene.files.front() : file;
    if (!options.scene.empty()) readDesignInto(scene, file, "--scene");
    requireScore(scene);
    Findings warnings = warningsOf(checkBeforeScore(scene), name);
    scene = withLoadsInUse(std::move(scene));
    Verdict verdict = judge(scene);
    return {name, std::move(scene), std::move(warnings), std::move(verdict)};
}

/// Designs with equal compliance as drawn share a rank. A design that is not supported has no rank.
void rank(std::vector<Compared>& designs) {
    for (Compared& each : designs) {
        if (!each.isSupportedAsDrawn()) continue;
        each.rank = 1 + static_cast<std::size_t>(std::count_if(
                            designs.begin(), designs.end(), [&](const Compared& other) {
                                return other.isSupportedAsDrawn() &&
                                       other.complianceAsDrawn() < each.complianceAsDrawn();
                            }));
    }
}

/// As drawn, times the first one's, where both have one.
std::string ratio(const Compared& each, const Compared& first) {
    if (!each.isSupportedAsDrawn() || !first.isSupportedAsDrawn()) return "-";
    return formatted("%.4f", each.complianceAsDrawn() / first.complianceAsDrawn());
}

void printTable(const std::vector<Compared>& designs) {
    std::printf("%4s %13s %8s %13s %8s %9s  design\n", "rank", "as drawn", "of first", "with greys",
                "volume", "size");
    for (const Compared& each : designs) {
        const Field& design = *each.scene.densities;
        std::printf("%4s %13s %8s %13s %6.1f %% %9s  %s\n",
                    each.rank > 0 ? std::to_string(each.rank).c_str() : "-",
                    complianceText(each.verdict.asDrawn()).c_str(),
                    ratio(each, designs.front()).c_str(),
                    each.verdict.drawn ? complianceText(each.verdict.found).c_str() : "no greys",
                    100 * each.volume(), formatted("%dx%d", design.width, design.height).c_str(),
                    nameOf(each.file).c_str());
    }
}

RgbImage drawingOf(const Compared& each) {
    const Scene& scene = each.scene;
    const Assessment& found = each.verdict.found;
    const auto& drawn = each.verdict.drawn;
    PictureContent content{
        wholeOf(*scene.densities, scene.symmetry), std::nullopt, nameOf(each.file.filename()),
        scoreSubtitle(*scene.densities, scene, found, drawn ? &drawn->assessment : nullptr)};
    if (found.problems.empty()) content.energies = wholeOf(found.score.energies, scene.symmetry);
    const Scene whole = wholeOf(scene);
    return drawPicture(whole, content, animationScale(whole));
}

/// On a white sheet.
RgbImage sideBySide(const std::vector<RgbImage>& images) {
    RgbImage sheet{0, 0, {}};
    for (const RgbImage& image : images) {
        sheet.width += image.width;
        sheet.height = std::max(sheet.height, image.height);
    }
    const auto rowBytes = 3 * static_cast<std::size_t>(sheet.width);
    sheet.pixels.assign(rowBytes * static_cast<std::size_t>(sheet.height), 255);
    std::size_t left = 0;
    for (const RgbImage& image : images) {
        const auto bytes = 3 * static_cast<std::size_t>(image.width);
        for (std::size_t y = 0; y < static_cast<std::size_t>(image.height); ++y)
            std::copy_n(&image.pixels[y * bytes], bytes, &sheet.pixels[y * rowBytes + left]);
        left += bytes;
    }
    return sheet;
}

Report reportOn(const std::vector<Compared>& designs) {
    Report list = Report::array();
    for (const Compared& each : designs) {
        Report object = {{"name", nameOf(each.file)}, {"volume", each.volume()}};
        object.update(reportOn(each.verdict));
        object["rank"] = each.rank > 0 ? Report(each.rank) : Report(nullptr);
        list.push_back(object);
    }
    return {{"command", "compare"}, {"designs", list}};
}

}  // namespace

int runCompare(const CompareOptions& options) {
    if (options.isJson) silenceStandardOutput();
    if (!options.picture.empty()) {
        checkEnding("--picture", options.picture, {".png"});
        checkOutput(options.picture, options.files);
    }
    std::vector<Compared> designs;
    for (const fs::path& file : options.files) designs.push_back(compared(file, options));
    rank(designs);
    printTable(designs);
    bool areSupported = true;
    // With --scene all designs have the warnings of that scene.
    if (!options.scene.empty())
        complainOf(designs.front().warnings, designs.front().scene.files.front());
    for (const Compared& each : designs) {
        if (options.scene.empty()) complainOf(each.warnings, each.file);
        complainOf(each.verdict.warnings, each.file);
        for (const std::string& problem : shownLines(each.verdict.found.problems)) {
            complain(nameOf(each.file) + ": not supported: " + problem);
            areSupported = false;
        }
    }
    if (!options.picture.empty()) {
        std::vector<RgbImage> images;
        for (const Compared& each : designs) images.push_back(drawingOf(each));
        writeFile(options.picture, encodePng(sideBySide(images)));
        std::printf("\n");
        printRow("picture", nameOf(options.picture));
    }
    if (options.isJson) print(reportOn(designs));
    return areSupported ? 0 : 1;
}
