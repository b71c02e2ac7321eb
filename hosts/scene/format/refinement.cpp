#include "format/refinement.h"

#include <algorithm>

namespace voxam::inline format {

namespace {

std::string sizeText(std::size_t columns, std::size_t rows) {
    return std::to_string(columns) + " x " + std::to_string(rows);
}

}  // namespace

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

std::string wrongSize(std::size_t columns, std::size_t rows, int width, int height,
                      int maxRefinement) {
    const auto gridColumns = static_cast<std::size_t>(width);
    const auto gridRows = static_cast<std::size_t>(height);
    const std::size_t refinement = columns / gridColumns;
    if (refinement >= 1 && refinement <= static_cast<std::size_t>(maxRefinement) &&
        columns == refinement * gridColumns && rows == refinement * gridRows)
        return "";
    std::string expected = sizeText(gridColumns, gridRows);
    if (maxRefinement > 1)
        expected += " times a whole number up to " + std::to_string(maxRefinement);
    return "is " + sizeText(columns, rows) + " cells, expected " + expected + " (grid)";
}

}  // namespace voxam::inline format
