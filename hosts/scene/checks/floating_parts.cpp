#include "checks/floating_parts.h"

#include <algorithm>
#include <utility>

#include "checks/held_nodes.h"
#include "checks/material.h"
#include "format/refinement.h"
#include "format/text.h"

namespace voxam::inline checks {

namespace {

/// The first node, if any, at which the load does work without touching material.
std::optional<Cell> looseNode(const Load& load, const Field& held, const HeldNodes& supports) {
    for (int x = load.x.from; x <= load.x.to; ++x)
        for (int y = load.y.from; y <= load.y.to; ++y)
            if (supports.leaveWork(load, x, y) && !hasMaterialAround(held, x, y)) return Cell{x, y};
    return std::nullopt;
}

}  // namespace

std::vector<FloatingPart> floatingParts(const Field& loose, int refinement) {
    Field left = loose;
    std::vector<FloatingPart> parts;
    for (int y = 0; y < left.height; ++y)
        for (int x = 0; x < left.width; ++x) {
            if (left.at(x, y) == 0) continue;
            parts.push_back({takeConnected(left, {{x, y}}), refinement});
            const auto rowByRow = [](const Cell& a, const Cell& b) {
                return std::pair(a.y, a.x) < std::pair(b.y, b.x);
            };
            std::sort(parts.back().cells.begin(), parts.back().cells.end(), rowByRow);
        }
    return parts;
}

Field without(Field design, const std::vector<FloatingPart>& parts) {
    for (const FloatingPart& part : parts)
        for (const Cell& cell : part.cells) design.at(cell.x, cell.y) = 0;
    return design;
}

Findings findLooseLoads(const Field& design, const std::vector<FloatingPart>& floating,
                        const Scene& scene) {
    const int factor = refinementOf(design, scene);
    const Scene plate = refined(scene, factor);
    const Field held = without(design, floating);
    const HeldNodes supports(plate);
    Findings findings;
    for (std::size_t i = 0; i < plate.loads.size(); ++i) {
        const auto node = looseNode(plate.loads[i], held, supports);
        if (!node) continue;
        const bool onPart = hasMaterialAround(design, node->x, node->y);
        const std::string at = placeText(1.0 * node->x / factor, 1.0 * node->y / factor);
        findings.push_back({Finding::ERROR, "loads[" + std::to_string(i) + "]",
                            onPart ? "acts on a part that no support holds, at " + at
                                   : "acts where there is no material, at " + at,
                            Place{true, scene.loads[i].x, scene.loads[i].y}});
    }
    return findings;
}

std::string describe(const std::vector<FloatingPart>& parts) {
    const double refinement = parts.front().refinement;
    double cells = 0;
    for (const FloatingPart& part : parts) cells += static_cast<double>(part.cells.size());
    const double elements = cells / (refinement * refinement);
    const Cell& first = parts.front().cells.front();
    return "no support holds " + counted(parts.size(), "part") + " of it, " +
           formatted(elements < 100 ? "%.3g" : "%.0f", elements) +
           (elements == 1 ? " element" : " elements") + " of the grid; the first at " +
           placeText(first.x / refinement, first.y / refinement);
}

}  // namespace voxam::inline checks
