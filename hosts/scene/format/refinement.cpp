#include "format/refinement.h"

#include <algorithm>

namespace voxam::inline format {

Scene refined(const Scene& scene, int factor) {
    const auto finer = [factor](Range& range) {
        range.from *= factor;
        range.to *= factor;
    };
    Scene result;
    result.title = scene.title;
    result.files = scene.files;
    result.width = factor * scene.width;
    result.height = factor * scene.height;
    result.loadCases = scene.loadCases;
    result.loads = scene.loads;
    result.supports = scene.supports;
    result.loadCasesInUse = scene.loadCasesInUse;
    for (Load& load : result.loads) {
        finer(load.x);
        finer(load.y);
    }
    for (Support& support : result.supports) {
        finer(support.x);
        finer(support.y);
    }
    return result;
}

Scene withLoadsInUse(Scene scene) {
    const auto& cases = scene.loadCasesInUse;
    for (Load& load : scene.loads)
        if (std::find(cases.begin(), cases.end(), load.loadCase) == cases.end())
            load.fx = load.fy = 0;
    return scene;
}

}  // namespace voxam::inline format
