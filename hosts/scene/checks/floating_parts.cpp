#include "checks/floating_parts.h"

#include <algorithm>
#include <set>
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

bool isAtNode(const FloatingPart& part, const Cell& node) {
    return std::any_of(part.cells.begin(), part.cells.end(), [&](const Cell& cell) {
        return (cell.x == node.x || cell.x + 1 == node.x) &&
               (cell.y == node.y || cell.y + 1 == node.y);
    });
}

/// The node, if there is just one, at which the part meets held material. It is a corner of both:
/// material that meets along an edge is held as well.
std::optional<Cell> onlyCorner(const FloatingPart& part, const Field& held) {
    std::set<Cell> corners;
    for (const Cell& cell : part.cells)
        for (const int x : {cell.x, cell.x + 1})
            for (const int y : {cell.y, cell.y + 1})
                if (hasMaterialAround(held, x, y)) corners.insert({x, y});
    if (corners.size() != 1) return std::nullopt;
    return *corners.begin();
}

/// Why the load at a node of loose material is not carried.
std::string whyLoose(const Cell& node, const std::vector<FloatingPart>& floating, const Field& held,
                     int factor) {
    const auto part = std::find_if(floating.begin(), floating.end(),
                                   [&](const FloatingPart& each) { return isAtNode(each, node); });
    const auto corner = part == floating.end() ? std::nullopt : onlyCorner(*part, held);
    if (!corner) return "acts on a part that no support holds, at ";
    return "acts on a part that can turn about the corner " +
           placeText(1.0 * corner->x / factor, 1.0 * corner->y / factor) +
           "; join it along an edge; the load is at ";
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
                            (onPart ? whyLoose(*node, floating, held, factor)
                                    : "acts where there is no material, at ") +
                                at,
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
