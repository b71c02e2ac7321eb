#pragma once

#include <vector>

#include "canvas.h"
#include "scene.h"

/// An arrow of a picture, for a load or for a part of it.
struct LoadArrow {
    Point tail;
    Point direction;  ///< of length 1
    double length = 0;
    int loadCase = 0;
};

/// Arrows for all loads, longer for larger forces, on a plate whose top left corner is at `plate`,
/// `scale` pixels per element. A load on many nodes has as many as there is room for. An arrow ends
/// at its node, or begins there where it would point off the plate; those that would cover one
/// another, such as those of several load cases at one node, stand side by side.
std::vector<LoadArrow> loadArrows(const Scene& scene, Point plate, double scale);

/// Load cases that have a colour of their own; further ones start again and need their number.
inline constexpr int LOAD_CASE_COLOURS = 8;

Colour loadCaseColour(int loadCase);

/// Places on the nodes of a rectangle for a symbol each: its corners and, evenly between them, as
/// many as stay `spacing` pixels apart.
std::vector<Point> spacedPlaces(const Range& columns, const Range& rows, Point plate, double scale,
                                double spacing);
