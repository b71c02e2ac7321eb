#pragma once

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <array>
#include <optional>
#include <vector>

#include "plate_arrow.h"
#include "plate_colours.h"
#include "plate_transform.h"
#include "scene.h"

/// Outlines of the passive elements and of the blob, in plate coordinates. They take a walk over
/// the elements, so they are made once for a scene and not for each picture.
struct PlateOutlines {
    std::array<QPainterPath, 3> passive;      ///< along the borders
    std::array<QPainterPath, 3> passiveArea;  ///< all elements, to hatch

    PlateOutlines() = default;
    explicit PlateOutlines(const Scene& scene);
};

/// Lines where an element of the list borders on one that is not in it, or on nothing.
QPainterPath cellOutline(const Cells& cells, int width, int height);

/// What a plate shows, beside its scene.
struct PlateLook {
    QImage material;  ///< null for an empty plate
    bool isSmooth = true;
    PlateOutlines outlines;
    ForceScale forces;
    std::optional<std::size_t> selectedLoad;
    /// On which end the selected load's arrow has its node, while a hand turns it.
    std::optional<bool> tailHeldAtNode;
    std::vector<QPointF> faults;  ///< places to mark, in plate coordinates
    std::vector<bool> loadCasesInUse;
};

/// Draws a plate with its signs.
class PlatePainter {
public:
    PlatePainter(QPainter& target, const PlateTransform& where, const PlateColours& colourSet)
        : painter(target), transform(where), colours(colourSet) {}

    void draw(const Scene& scene, const PlateLook& look);

private:
    void drawMaterial(const Scene& scene, const PlateLook& look);
    void drawGrid(const Scene& scene);
    void drawPassive(const PlateOutlines& outlines);
    void drawSupport(const Support& support, const Scene& scene);
    void drawSupportSign(QPointF tip, QPointF out, bool isRoller);
    void drawLoad(const Load& load, const Scene& scene, const PlateLook& look, bool isSelected);
    void drawArrow(const PlateArrow& arrow, const QColor& colour);
    void drawLoadCase(const PlateArrow& arrow, int loadCase, const QColor& colour);
    void drawHandles(const PlateArrow& arrow);
    void drawFault(QPointF place);

    QPainter& painter;
    const PlateTransform& transform;
    const PlateColours& colours;
};
