#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QTransform>
#include <algorithm>
#include <cmath>

#include "scene_edits.h"

/// Where the plate lies in a widget: plate coordinates count elements from the top left corner.
struct PlateTransform {
    QPointF origin;    ///< of the plate, in the widget
    double scale = 1;  ///< pixels per element

    QPointF toWidget(QPointF plate) const { return origin + scale * plate; }
    QPointF toWidget(double x, double y) const { return toWidget(QPointF(x, y)); }
    QPointF toPlate(QPointF widget) const { return (widget - origin) / scale; }
    QTransform matrix() const { return {scale, 0, 0, scale, origin.x(), origin.y()}; }
    QRectF plateRect(int width, int height) const {
        return {origin, QSizeF(scale * width, scale * height)};
    }
};

/// The node nearest to a place of the plate, or of its edge for a place outside.
inline Node nearestNode(QPointF plate, const Scene& scene) {
    return {std::clamp(static_cast<int>(std::lround(plate.x())), 0, scene.width),
            std::clamp(static_cast<int>(std::lround(plate.y())), 0, scene.height)};
}

/// The element that a place lies in; it may lie outside the plate.
inline Cell cellAt(QPointF plate) {
    const auto whole = [](double value) {
        return static_cast<int>(std::floor(std::clamp(value, -1e6, 1e6)));
    };
    return {whole(plate.x()), whole(plate.y())};
}
