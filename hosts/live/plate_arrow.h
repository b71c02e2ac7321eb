#pragma once

#include <QPointF>
#include <vector>

#include "plate_transform.h"
#include "scene.h"

/// How long an arrow is for a force. The unit is fixed while a scene is edited: arrows must not
/// grow or shrink because another load changes.
class ForceScale {
public:
    /// The largest force of the scene gets an arrow of ordinary length.
    explicit ForceScale(const Scene& scene);
    ForceScale() = default;

    double unit() const { return ordinaryForce; }
    /// In pixels; a load that acts on several nodes has shorter arrows.
    double length(double force, bool isSingle) const;
    /// The force of an arrow that a hand drew this long; the inverse of length().
    double force(double length, bool isSingle) const;

private:
    double ordinaryForce = 1;
};

/// An arrow in a widget. It ends at its node, or begins there if it points off the plate.
struct PlateArrow {
    QPointF tail;
    QPointF tip;
    bool isTailAtNode = false;

    QPointF foot() const { return isTailAtNode ? tail : tip; }
    QPointF freeEnd() const { return isTailAtNode ? tip : tail; }
    double length() const;
};

bool isSingle(const Load& load);
double forceOf(const Load& load);

/// The arrows of a load, one for each of its nodes or as many as there is room for. None for a
/// force of 0.
std::vector<PlateArrow> arrowsOf(const Load& load, const Scene& scene, const ForceScale& forces,
                                 const PlateTransform& transform);

/// The one arrow at the middle of the nodes, which a hand can take hold of.
PlateArrow handleOf(const Load& load, const Scene& scene, const ForceScale& forces,
                    const PlateTransform& transform);

/// Places on the nodes of a rectangle for a sign each, in plate coordinates: its corners and,
/// evenly between them, as many as stay `spacing` pixels apart.
std::vector<QPointF> signPlaces(const Range& columns, const Range& rows, double spacing,
                                double scale);
