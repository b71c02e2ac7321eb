#include "thumbnail.h"

#include <QPainter>
#include <algorithm>

#include "checks/assessment.h"
#include "export/outline.h"
#include "format/refinement.h"
#include "format/symmetry.h"
#include "plate_painter.h"

using namespace voxam;

namespace {

constexpr double MARGIN = 22;  // pixels around a plate, for its signs

/// The material as a picture of the thumbnail's size in pixels.
QImage materialPicture(const Field& material, int refinement, double level, const QSize& size,
                       const PlateColours& colours) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(colours.voids);
    const Outline outline = traceOutline(material, refinement, 1, level);
    QPainterPath path;
    for (const Contour& contour : outline.contours) {
        QPolygonF corners;
        for (const OutlinePoint& corner : contour.corners) corners << QPointF(corner.x, corner.y);
        path.addPolygon(corners);
        path.closeSubpath();
    }
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size.width() / outline.width, size.height() / outline.height);
    painter.fillPath(path, colours.solid);
    return picture;
}

}  // namespace

QImage thumbnailOf(const Scene& scene, const Field& material, const QSize& size, double pixelRatio,
                   const PlateColours& colours) {
    const Scene whole = wholeOf(scene);
    PlateTransform transform;
    transform.scale = std::min((size.width() - 2 * MARGIN) / whole.width,
                               (size.height() - 2 * MARGIN) / whole.height);
    transform.origin = {0.5 * (size.width() - transform.scale * whole.width),
                        0.5 * (size.height() - transform.scale * whole.height)};
    PlateLook look;
    look.outlines = PlateOutlines(whole);
    look.forces = ForceScale(whole);
    if (!material.values.empty()) {
        const int refinement = refinementOf(material, scene);
        const double level = drawnDesign(material, scene, drawnRefinement(scene, refinement)).level;
        const double scale = transform.scale * pixelRatio;
        look.material =
            materialPicture(wholeOf(material, scene.symmetry), refinement, level,
                            (scale * QSizeF(whole.width, whole.height)).toSize(), colours);
    }
    QImage image(size * pixelRatio, QImage::Format_RGB32);
    image.setDevicePixelRatio(pixelRatio);
    image.fill(colours.surroundings);
    QPainter painter(&image);
    PlatePainter(painter, transform, colours).draw(whole, look);
    return image;
}
