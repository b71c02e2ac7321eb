#include "format/detail.h"

#include <algorithm>
#include <cmath>

#include "format/input_error.h"
#include "format/text.h"

namespace voxam::inline format {

namespace {

std::string wholeNumber(double value) { return std::to_string(std::llround(value)); }

/// Follows what matters here through a timeline, without copies of a scene.
class DetailRules {
public:
    DetailRules(const Scene& scene, const Detail& start)
        : detail(start), hasPassive(!scene.passive.empty()), hasBlob(!scene.blob.empty()) {}

    void apply(const Change& change) {
        if (change.has("passive")) hasPassive = !change.settings.passive.empty();
        if (change.has("blob")) hasBlob = !change.settings.blob.empty();
        if (!change.restart || change.restart->keepsDesign) return;
        detail.subdivision = change.restart->subdivision;
        detail.meshFactor = change.restart->meshFactor;
    }

    std::optional<DetailFault> fault() const {
        const auto [width, height, subdivision, meshFactor] = detail;
        if (const auto found =
                tooFine("subdivision", "design", subdivision, Scene::MAX_DESIGN_CELLS))
            return found;
        if (const auto found = tooFine("meshFactor", "picture", subdivision * meshFactor,
                                       Scene::MAX_PICTURE_CELLS))
            return found;
        if (subdivision == meshFactor || (!hasPassive && !hasBlob)) return std::nullopt;
        return DetailFault{std::nullopt, "",
                           formatted("subdivision (%d) and meshFactor (%d) must be equal if there "
                                     "are passive elements or a blob; set meshFactor to %d",
                                     subdivision, meshFactor, subdivision)};
    }

private:
    std::optional<DetailFault> tooFine(const char* key, const char* what, double refinement,
                                       double mostCells) const {
        const double columns = refinement * detail.width;
        const double rows = refinement * detail.height;
        if (columns * rows <= mostCells && std::max(columns, rows) <= Scene::MAX_FINE_SIDE)
            return std::nullopt;
        return DetailFault{std::nullopt, key,
                           "refines the " + std::string(what) + " to " + wholeNumber(columns) +
                               " x " + wholeNumber(rows) + " cells; the limits are " +
                               wholeNumber(mostCells) + " cells, and " +
                               wholeNumber(Scene::MAX_FINE_SIDE) + " along a side"};
    }

    Detail detail;
    bool hasPassive;
    bool hasBlob;
};

}  // namespace

Detail detailOf(const Scene& scene) {
    return {scene.width, scene.height, scene.subdivision, scene.meshFactor};
}

std::optional<DetailFault> findDetailFault(const Scene& scene) {
    return findDetailFault(scene, detailOf(scene));
}

std::optional<DetailFault> findDetailFault(const Scene& scene, const Detail& detail) {
    DetailRules rules(scene, detail);
    if (auto fault = rules.fault()) return fault;
    for (std::size_t i = 0; i < scene.timeline.size(); ++i) {
        rules.apply(scene.timeline[i]);
        auto fault = rules.fault();
        if (!fault) continue;
        fault->change = i;
        return fault;
    }
    return std::nullopt;
}

void checkDetail(const Scene& scene, const Detail& detail) {
    const auto fault = findDetailFault(scene, detail);
    if (!fault) return;
    std::string text = fault->key.empty() ? fault->text : fault->key + " " + fault->text;
    if (fault->change)
        text = "from iteration " + std::to_string(scene.timeline[*fault->change].iteration) +
               " on, " + text;
    throw InputError(text);
}

}  // namespace voxam::inline format
