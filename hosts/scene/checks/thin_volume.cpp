#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "checks/held_nodes.h"
#include "checks/plate_checks.h"
#include "format/refinement.h"
#include "format/text.h"

namespace voxam::inline checks {

namespace {

// Plates with less than this for their longest path have torn at every detail that was tried.
constexpr double THIN = 2;  // elements
// A bar of one row of elements, which is full, does not tear.
constexpr double LITTLE_VOLUME = 0.25;

int gap(int node, const Range& nodes) { return std::max({0, nodes.from - node, node - nodes.to}); }

double distanceToSupport(int x, int y, const Scene& scene) {
    double nearest = std::numeric_limits<double>::infinity();
    for (const Support& support : scene.supports)
        nearest = std::min(nearest, std::hypot(gap(x, support.x), gap(y, support.y)));
    return nearest;
}

/// Of the nodes at which the load does work, the largest distance to a support. It is 0 without
/// such a node, and without supports.
double longestPath(const Load& load, const Scene& scene, const HeldNodes& held) {
    double longest = 0;
    for (int x = load.x.from; x <= load.x.to; ++x)
        for (int y = load.y.from; y <= load.y.to; ++y)
            if (held.leaveWork(load, x, y))
                longest = std::max(longest, distanceToSupport(x, y, scene));
    return scene.supports.empty() ? 0 : longest;
}

}  // namespace

Findings findThinVolume(const Scene& scene) {
    if (scene.volumeFraction >= LITTLE_VOLUME) return {};
    const double elements = scene.volumeFraction * scene.width * scene.height;
    // Enough for any path, which spares most scenes the search.
    if (elements >= THIN * std::hypot(scene.width, scene.height)) return {};
    const HeldNodes held(scene);
    const Scene inUse = withLoadsInUse(scene);
    for (std::size_t i = 0; i < inUse.loads.size(); ++i) {
        const double path = longestPath(inUse.loads[i], scene, held);
        if (elements >= THIN * path) continue;
        return {{Finding::WARNING, "volumeFraction",
                 formatted("%g is enough for a bar %.2g elements wide from loads[%zu] to the "
                           "nearest support, and such a thin design tears; take more volume or a "
                           "finer grid",
                           scene.volumeFraction, elements / path, i),
                 std::nullopt}};
    }
    return {};
}

}  // namespace voxam::inline checks
