#pragma once

#include <QRectF>
#include <QTransform>
#include <memory>

#include "format/scene.h"
#include "plate_transform.h"

using namespace voxam;

// A scene with a symmetry describes one half of a plate. The window shows the whole: the half that
// is edited, and its reflection on the other side of the plane.

/// Where the half lies in the whole plate, in elements: the top left corner of the half, and the
/// size of the whole.
struct WholePlate {
    QPointF offset;
    QSizeF size;
};
WholePlate wholePlateOf(const Scene& scene);

/// The whole plate in a widget, where the half lies at `transform`.
QRectF wholeRect(const Scene& scene, const PlateTransform& transform);

/// From the half to its reflection, in a widget.
QTransform reflection(const Scene& scene, const PlateTransform& transform);

/// The mirror image of a place, in elements of the half.
QPointF reflectedPlace(const Scene& scene, QPointF plate);

/// The plane in a widget.
QLineF planeOf(const Scene& scene, const PlateTransform& transform);

/// Whether a support only holds the plane of symmetry. The window draws a line instead.
bool standsForPlane(const Support& support, const Scene& scene);

/// The half as the window draws it: without the supports on the plane of symmetry. Returns `scene`
/// itself if it has no symmetry.
std::shared_ptr<const Scene> shownHalf(const std::shared_ptr<const Scene>& scene);

/// The half as the window draws its reflection: without the loads and supports on the plane, which
/// both halves share, and without the numbers of load cases. Null if the scene has no symmetry.
std::shared_ptr<const Scene> reflectedHalf(const Scene& scene);
