#include <algorithm>
#include <functional>

#include "checks/passive_void.h"
#include "checks/plate_checks.h"

namespace voxam::inline checks {

Findings findFreePlate(const Scene& scene) {
    const PassiveVoid passiveVoid(scene);
    std::vector<int> rowsOfX;
    std::vector<int> columnsOfY;
    for (const Support& support : scene.supports)
        for (int x = support.x.from; x <= support.x.to; ++x)
            for (int y = support.y.from; y <= support.y.to; ++y) {
                if (passiveVoid.surrounds(x, y)) continue;
                if (support.fixX) rowsOfX.push_back(y);
                if (support.fixY) columnsOfY.push_back(x);
            }
    const auto notAllEqual = [](const std::vector<int>& values) {
        return std::adjacent_find(values.begin(), values.end(), std::not_equal_to<>()) !=
               values.end();
    };
    const auto free = [](const std::string& how) {
        return Findings{{Finding::ERROR, "supports", "the plate is free to " + how, std::nullopt}};
    };
    if (rowsOfX.empty() && columnsOfY.empty()) return free("move: nothing is held");
    if (rowsOfX.empty()) return free("move along x: nothing is held in x");
    if (columnsOfY.empty()) return free("move along y: nothing is held in y");
    if (notAllEqual(rowsOfX) || notAllEqual(columnsOfY)) return {};
    return free("turn: hold x in two rows of nodes, or y in two columns");
}

}  // namespace voxam::inline checks
