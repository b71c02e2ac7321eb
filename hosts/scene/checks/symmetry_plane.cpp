#include "checks/held_nodes.h"
#include "checks/material.h"
#include "checks/plate_checks.h"
#include "format/refinement.h"
#include "format/symmetry.h"
#include "format/text.h"

namespace voxam::inline checks {

Findings findOpenPlane(const Scene& scene, const Field& material) {
    if (scene.symmetry == Symmetry::NONE) return {};
    const bool upright = isUpright(scene.symmetry);
    const bool isFar = scene.symmetry == Symmetry::RIGHT || scene.symmetry == Symmetry::BOTTOM;
    const int plane = isFar ? (upright ? scene.width : scene.height) : 0;
    const int last = upright ? scene.height : scene.width;
    const int refinement = refinementOf(material, scene);
    const HeldNodes held(scene);
    Load across;
    (upright ? across.fx : across.fy) = 1;
    for (int i = 0; i <= last; ++i) {
        const int x = upright ? plane : i;
        const int y = upright ? i : plane;
        const bool isFree = held.leaveWork(across, x, y) &&
                            hasMaterialAround(material, refinement * x, refinement * y);
        if (!isFree) continue;
        const char* const direction = upright ? "x" : "y";
        const std::string& side = SYMMETRY_NAMES[static_cast<std::size_t>(scene.symmetry)];
        return {{Finding::ERROR, "symmetry",
                 "the node " + placeText(x, y) + " on the plane of symmetry is free in " +
                     direction + "; hold the nodes of the " + side + " edge in " + direction,
                 Place{true, {x, x}, {y, y}}}};
    }
    return {};
}

}  // namespace voxam::inline checks
