#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "drawing/colour.h"
#include "drawing/point.h"
#include "format/scene.h"

namespace voxam::inline drawing {

/// The lengths of arrows. Keep one object while a scene is edited, so that changing one load does
/// not rescale the other arrows.
class ForceScale {
public:
    /// The largest force of the scene gets an arrow of ordinary length.
    explicit ForceScale(const Scene& scene);
    ForceScale() = default;

    double unit() const { return ordinaryForce; }
    /// In pixels; a load on several nodes has shorter arrows.
    double length(double force, bool single) const;

private:
    double ordinaryForce = 1;
};

/// An arrow of a picture, for a load or for a part of it.
struct LoadArrow {
    Point tail;
    Point direction;  ///< of length 1
    double length = 0;
    std::size_t load = 0;  ///< index of the load in the scene
    int loadCase = 0;
    bool tailAtNode = false;  ///< rather than the tip

    Point tip() const { return tail + length * direction; }
    /// The end at the node, and the other one.
    Point foot() const { return tailAtNode ? tail : tip(); }
    Point freeEnd() const { return tailAtNode ? tip() : tail; }
};

/// A load whose arrows a hand is turning: they keep their end at the node, and are not moved aside.
struct HeldLoad {
    std::size_t load = 0;
    bool tailAtNode = false;
    std::optional<double> length;  ///< pixels, while a hand holds the free end
};

bool isSingle(const Load& load);
double forceOf(const Load& load);

/// Arrows for all loads on a plate whose top left corner is at `plate`, `scale` pixels per element.
/// A load on many nodes has as many as there is room for. An arrow ends at its node, or begins
/// there if it would point off the plate. Arrows that would cover one another, for example of
/// several load cases at one node, are moved aside.
std::vector<LoadArrow> loadArrows(const Scene& scene, Point plate, double scale,
                                  const ForceScale& forces,
                                  const std::optional<HeldLoad>& held = std::nullopt);

/// Arrows in the force scale of the scene.
inline std::vector<LoadArrow> loadArrows(const Scene& scene, Point plate, double scale) {
    return loadArrows(scene, plate, scale, ForceScale(scene));
}

/// Number of colours of load cases. Further load cases repeat the colours and need their number.
inline constexpr int LOAD_CASE_COLOURS = 8;

Colour loadCaseColour(int loadCase);

/// Places for symbols on the nodes of a rectangle: its corners and, evenly between them, as many as
/// are at least `spacing` pixels apart.
std::vector<Point> spacedPlaces(const Range& columns, const Range& rows, Point plate, double scale,
                                double spacing);

}  // namespace voxam::inline drawing
