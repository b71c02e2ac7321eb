#pragma once

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "checks/floating_parts.h"
#include "drawing/plate_signs.h"
#include "format/scene.h"
#include "plate_arrow.h"
#include "plate_colours.h"
#include "plate_transform.h"
#include "run/views.h"

using namespace voxam;

/// Outlines of the passive elements and of the blob, in plate coordinates. They are
/// made once for each scene, because finding them visits all elements.
struct PlateOutlines {
    std::array<QPainterPath, 3> passive;      ///< along the borders
    std::array<QPainterPath, 3> passiveArea;  ///< all elements, to hatch

    PlateOutlines() = default;
    explicit PlateOutlines(const Scene& scene);
};

/// The lines around an area, in elements: see outlineOf().
QPainterPath outlinePath(const Area& area, int width, int height);
/// The lines around elements in any order.
QPainterPath outlinePath(Cells cells, int width, int height);

/// Around parts of a design, in plate coordinates.
QPainterPath outlineOf(const std::vector<FloatingPart>& parts, const Field& design,
                       const Scene& scene);

/// A design on the deformed plate of a view.
struct DeformedPlate {
    Field design;
    std::shared_ptr<const ViewedField> field;
    double magnification = 1;
};

/// Details of a plate in addition to its scene.
struct PlateLook {
    QImage material;  ///< null for an empty plate
    bool isSmooth = true;
    std::optional<DeformedPlate> deformed;  ///< over the material
    double deformationShare = 1;            ///< of its magnification
    PlateOutlines outlines;
    ForceScale forces;
    std::optional<std::size_t> selectedLoad;
    std::optional<HeldLoad> held;
    QPainterPath floating;        ///< around floating parts, in plate coordinates
    std::vector<QPointF> faults;  ///< places to mark, in plate coordinates
    std::vector<bool> loadCasesInUse;
};

/// Draws a plate with its signs.
class PlatePainter {
public:
    PlatePainter(QPainter& target, const PlateTransform& where, const PlateColours& colourSet)
        : painter(target), transform(where), colours(colourSet) {}

    void draw(const Scene& scene, const PlateLook& look);
    /// Numbers of nodes, beyond the signs around the plate but always in sight.
    void drawRulers(const Scene& scene, const QRect& sight);

private:
    void drawMaterial(const Scene& scene, const PlateLook& look);
    void drawDeformed(const Scene& scene, const PlateLook& look);
    void drawGrid(const Scene& scene);
    void drawPassive(const PlateOutlines& outlines);
    void drawFloating(const QPainterPath& outline);
    void drawSupportSign(const SupportSign& sign);
    void drawLoads(const Scene& scene, const PlateLook& look);
    void drawArrow(const LoadArrow& arrow, const PlateLook& look);
    QColor colourOf(int loadCase, const PlateLook& look) const;
    void drawLoadCase(const LoadArrow& arrow, const Scene& scene, const PlateLook& look);
    void drawHandles(const LoadArrow& arrow);
    void drawForce(const LoadArrow& arrow, double force);
    void drawFault(QPointF place);

    QPainter& painter;
    const PlateTransform& transform;
    const PlateColours& colours;
};
