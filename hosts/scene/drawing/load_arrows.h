#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "drawing/colour.h"
#include "drawing/point.h"
#include "format/scene.h"

namespace voxam::inline drawing {

/// How long arrows are. Who keeps one for as long as a scene is edited has arrows that neither grow
/// nor shrink because another load changes.
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
    std::size_t load = 0;  ///< its place among the loads of the scene
    int loadCase = 0;
    bool tailAtNode = false;  ///< rather than the tip

    Point tip() const { return tail + length * direction; }
    /// The end at the node, and the other one.
    Point foot() const { return tailAtNode ? tail : tip(); }
    Point freeEnd() const { return tailAtNode ? tip() : tail; }
};

/// Of a load whose arrows are being turned: they keep their end at the node, and stand nowhere
/// else.
struct HeldLoad {
    std::size_t load = 0;
    bool tailAtNode = false;
    std::optional<double> length;  ///< pixels, while a hand holds the free end
};

bool isSingle(const Load& load);
double forceOf(const Load& load);

/// Arrows for all loads on a plate whose top left corner is at `plate`, `scale` pixels per element.
/// A load on many nodes has as many as there is room for. An arrow ends at its node, or begins
/// there where it would point off the plate; those that would cover one another, such as those of
/// several load cases at one node, stand side by side.
std::vector<LoadArrow> loadArrows(const Scene& scene, Point plate, double scale,
                                  const ForceScale& forces,
                                  const std::optional<HeldLoad>& held = std::nullopt);

/// The same in the scale of the scene.
inline std::vector<LoadArrow> loadArrows(const Scene& scene, Point plate, double scale) {
    return loadArrows(scene, plate, scale, ForceScale(scene));
}

/// Load cases that have a colour of their own; further ones start again and need their number.
inline constexpr int LOAD_CASE_COLOURS = 8;

Colour loadCaseColour(int loadCase);

/// Places on the nodes of a rectangle for a symbol each: its corners and, evenly between them, as
/// many as stay `spacing` pixels apart.
std::vector<Point> spacedPlaces(const Range& columns, const Range& rows, Point plate, double scale,
                                double spacing);

}  // namespace voxam::inline drawing
