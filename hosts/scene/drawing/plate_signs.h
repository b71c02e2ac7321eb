#pragma once

#include <array>
#include <string>
#include <vector>

#include "drawing/load_arrows.h"
#include "format/scene.h"

namespace voxam::inline drawing {

// The shapes of the signs on and around a plate, in pixels, for the picture and the window. `plate`
// is the plate's top left corner, `scale` the number of pixels per element.

constexpr double OUTLINE_THICKNESS = 2;  ///< around areas
constexpr double SUPPORT_GROUND_THICKNESS = 1.5;

/// Room around a plate for arrows and supports, and for the rulers beyond it at the left and below.
constexpr int SIGN_MARGIN = 50;
constexpr int RULER_WIDTH = 32;
constexpr int RULER_HEIGHT = 22;

/// A filled arrow.
std::vector<Point> arrowShape(const LoadArrow& arrow);

/// A support at a node: a filled triangle and the line of the ground. If one direction is free, the
/// triangle is smaller and has a filled roller below it.
struct SupportSign {
    std::vector<Point> triangle;
    Point rollerCentre;
    double rollerRadius = 0;  ///< 0 without a roller
    std::array<Point, 2> ground;
};

/// `out` is the unit vector from the node to the ground.
SupportSign supportSign(Point node, Point out, bool roller);

/// Signs for a support, as many as there is room for, on the side closer to the border.
std::vector<SupportSign> supportSigns(const Support& support, const Scene& scene, Point plate,
                                      double scale);

/// A scale with the numbers of nodes, along one side of the plate.
struct Ruler {
    struct Label {
        std::string text;
        Point at;
        double align;  ///< 0.5: `at` is the middle of the base line, 1: its right end
    };

    /// The line of the ruler, followed by a tick for each number.
    std::vector<std::array<Point, 2>> lines;
    std::vector<Label> numbers;
    Label axis;
};

/// The rulers for x and for y, whose lines would meet at `corner`, left of the plate and below.
std::array<Ruler, 2> rulers(const Scene& scene, Point plate, double scale, Point corner);

}  // namespace voxam::inline drawing
