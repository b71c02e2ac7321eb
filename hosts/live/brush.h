#pragma once

#include <QPointF>
#include <vector>

#include "plate_transform.h"
#include "scene_edits.h"

/// What paints elements or nodes. The size is its diameter, in elements.
struct Brush {
    static constexpr int MAX_SIZE = 40;

    int size = 1;
    bool isRound = true;
};

/// The paint between press and release of a tool for elements: a stroke, a rectangle or a disc.
enum class Shape { STROKE, RECTANGLE, DISC };

/// Whether a stroke is also drawn mirrored at the plate's middle.
struct Mirror {
    bool isLeftRight = false;
    bool isTopBottom = false;
};

/// The elements, each once and sorted, with those that mirror them on a plate of width x height.
Cells mirrored(const Cells& cells, const Mirror& mirror, int width, int height);

/// The elements under a brush; some may lie outside the plate.
Cells footprint(const Brush& brush, QPointF plate);

/// The elements of a plate of width x height that a brush touches on its way, each once, sorted.
/// The time is limited even if the way leads far beyond the plate.
Cells strokeCells(const Brush& brush, QPointF from, QPointF to, int width, int height);

/// The nodes of the plate that a brush touches on its way.
std::vector<Node> strokeNodes(const Brush& brush, QPointF from, QPointF to, int width, int height);
