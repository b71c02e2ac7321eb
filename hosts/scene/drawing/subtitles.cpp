#include "drawing/subtitles.h"

#include "format/refinement.h"
#include "format/text.h"

namespace voxam::inline drawing {

namespace {

/// The picture shows the whole plate, whose compliance is twice that of the half.
const char* complianceName(Symmetry symmetry) {
    return symmetry == Symmetry::NONE ? "compliance" : "compliance of the half";
}

}  // namespace

std::string complianceText(const Assessment& found) {
    return found.problems.empty() ? formatted("%.6g", found.score.compliance) : "not supported";
}

std::string materialText(const Field& design, const Scene& scene) {
    return formatted("%.1f %%  (%.7g of ", 100 * mean(design), sum(design)) +
           counted(design.values.size(), refinementOf(design, scene) > 1 ? "cell" : "element") +
           ")";
}

std::string runSubtitle(const IterationRecord& shown, Symmetry symmetry, const Assessment* drawn) {
    return formatted("iteration %d,  %s %.6g", shown.iteration, complianceName(symmetry),
                     shown.compliance) +
           (drawn != nullptr ? ", as drawn " + complianceText(*drawn) : "") +
           formatted(",  volume %.1f %%", 100 * shown.volume);
}

namespace {

/// The rest of the line, after the compliance.
std::string materialPart(const Field& design, const Scene& scene, const Assessment& found) {
    std::string text = ",  material used " + materialText(design, scene);
    // Their outlines show which parts.
    if (found.problems.empty() && !found.floating.empty())
        text += ",  " + counted(found.floating.size(), "part") + " left out";
    return text;
}

}  // namespace

std::string scoreSubtitle(const Field& design, const Scene& scene, const Assessment& found,
                          const Assessment* drawn) {
    const bool isSupported = found.problems.empty();
    std::string text = isSupported ? complianceName(scene.symmetry) + (" " + complianceText(found))
                                   : "not supported: " + lineOf(found.problems.front());
    if (drawn != nullptr && isSupported) text += ", as drawn " + complianceText(*drawn);
    return text + materialPart(design, scene, found);
}

std::string keptSubtitle(const Field& design, const Scene& scene, const Assessment& drawn) {
    if (!drawn.problems.empty()) return scoreSubtitle(design, scene, drawn);
    return complianceName(scene.symmetry) + (" as drawn " + complianceText(drawn)) +
           materialPart(design, scene, drawn);
}

}  // namespace voxam::inline drawing
