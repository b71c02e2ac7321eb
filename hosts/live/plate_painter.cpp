#include "plate_painter.h"

#include <QLocale>
#include <algorithm>
#include <cmath>
#include <utility>

#include "drawing/area_outline.h"
#include "drawing/deformed_cells.h"
#include "format/refinement.h"
#include "reflection.h"

using namespace voxam;

namespace {

// Pixels.
constexpr double LEAST_GRID_SCALE = 11;  // a finer grid would be a haze
constexpr double RIM = 1.2;
constexpr int RULER_FONT = 10;
constexpr int RULER_GROUND_ALPHA = 215;
constexpr double RULER_GAP = 4;
constexpr double HANDLE_RADIUS = 5;
constexpr double FAULT_RADIUS = 13;
constexpr double FORCE_GAP = 12;  // from an arrow to its number
constexpr int FORCE_DIGITS = 4;
constexpr int CASE_NAME_WIDTH = 110;  // pixels, at most

QPolygonF polygonOf(const std::vector<Point>& corners) {
    QPolygonF polygon;
    for (const Point corner : corners) polygon.append(toQt(corner));
    return polygon;
}

QPainterPath areaOf(const Cells& cells) {
    QPainterPath path;
    for (const Cell& cell : cells) path.addRect(cell.x, cell.y, 1, 1);
    return path;
}

}  // namespace

QPainterPath outlinePath(const Area& area, int width, int height) {
    QPainterPath path;
    for (const auto& [from, to] : outlineOf(area, width, height)) {
        path.moveTo(from.x, from.y);
        path.lineTo(to.x, to.y);
    }
    return path;
}

QPainterPath outlinePath(Cells cells, int width, int height) {
    std::sort(cells.begin(), cells.end());
    return outlinePath(Area{std::move(cells), {}}, width, height);
}

QPainterPath outlineOf(const std::vector<FloatingPart>& parts, const Field& design,
                       const Scene& scene) {
    Cells cells;
    for (const FloatingPart& part : parts)
        cells.insert(cells.end(), part.cells.begin(), part.cells.end());
    const double size = 1.0 / refinementOf(design, scene);
    return QTransform::fromScale(size, size).map(outlinePath(cells, design.width, design.height));
}

PlateOutlines::PlateOutlines(const Scene& scene) {
    const std::array<const Area*, 3> kinds = {&scene.passive.voids, &scene.passive.solids,
                                              &scene.passive.secondSolids};
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
        passive[kind] = outlinePath(*kinds[kind], scene.width, scene.height);
        passiveArea[kind] = areaOf(kinds[kind]->cells);
    }
}

void PlatePainter::draw(const Scene& scene, const PlateLook& look) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    drawMaterial(scene, look);
    if (look.deformed) drawDeformed(scene, look);
    drawPassive(look.outlines);
    drawFloating(look.floating);
    for (const Support& support : scene.supports)
        for (const SupportSign& sign :
             supportSigns(support, scene, ofQt(transform.origin), transform.scale))
            drawSupportSign(sign);
    drawLoads(scene, look);
    for (const QPointF fault : look.faults) drawFault(transform.toWidget(fault));
    painter.restore();
}

void PlatePainter::drawMaterial(const Scene& scene, const PlateLook& look) {
    const QRectF plate = transform.plateRect(scene.width, scene.height);
    painter.fillRect(plate, colours.voids);
    if (!look.material.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform, look.isSmooth);
        painter.drawImage(plate, look.material);
    }
    drawGrid(scene);
    painter.setPen(QPen(colours.edge, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(plate);
}

void PlatePainter::drawDeformed(const Scene& scene, const PlateLook& look) {
    const Deformation& deformation = *look.deformed->field->deformation;
    const double share =
        look.deformationShare * look.deformed->magnification / deformation.magnification;
    painter.save();
    // Neighbours that are smoothed each on its own would let the ground shine through between them.
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(Qt::NoPen);
    for (const auto& [density, quads] :
         deformedCells(look.deformed->design, deformation, scene, ofQt(transform.origin),
                       transform.scale, share)) {
        painter.setBrush(mixed(colours.voids, colours.solid, density));
        for (const Quad& quad : quads) {
            std::array<QPointF, 4> corners;
            std::transform(quad.begin(), quad.end(), corners.begin(),
                           [](Point corner) { return toQt(corner); });
            painter.drawConvexPolygon(corners.data(), static_cast<int>(corners.size()));
        }
    }
    painter.restore();
}

// Draws the lines of each direction by stretching a strip of one pixel over the plate. Drawing so
// many lines one by one would take more time than the rest of the picture.
void PlatePainter::drawGrid(const Scene& scene) {
    if (transform.scale < LEAST_GRID_SCALE) return;
    QColor faint = colours.edge;
    faint.setAlpha(36);
    const double ratio = painter.device()->devicePixelRatioF();
    // Aligned to the pixels of the screen, or the stretched strip could skip a line.
    const auto onScreen = [&](QPointF place) { return (ratio * place).toPoint(); };
    const QPoint corner = onScreen(transform.toWidget(0, 0));
    const QPoint opposite = onScreen(transform.toWidget(scene.width, scene.height)) - corner;
    const QRect pixels(corner, QSize(opposite.x(), opposite.y()));
    const QRectF target(QPointF(pixels.topLeft()) / ratio, QSizeF(pixels.size()) / ratio);
    QImage columns(pixels.width(), 1, QImage::Format_ARGB32_Premultiplied);
    QImage rows(1, pixels.height(), QImage::Format_ARGB32_Premultiplied);
    for (QImage* strip : {&columns, &rows}) strip->fill(Qt::transparent);
    for (int x = 1; x < scene.width; ++x)
        columns.setPixelColor(onScreen(transform.toWidget(x, 0)).x() - corner.x(), 0, faint);
    for (int y = 1; y < scene.height; ++y)
        rows.setPixelColor(0, onScreen(transform.toWidget(0, y)).y() - corner.y(), faint);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    for (const QImage& strip : {columns, rows}) painter.drawImage(target, strip);
    painter.restore();
}

void PlatePainter::drawPassive(const PlateOutlines& outlines) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QTransform toWidget = transform.matrix();
    // Void is hatched, the second solid is dotted: the outlines alone differ in nothing but colour.
    const std::array<Qt::BrushStyle, 3> hatchings = {Qt::BDiagPattern, Qt::NoBrush,
                                                     Qt::Dense6Pattern};
    for (std::size_t kind = 0; kind < hatchings.size(); ++kind) {
        if (outlines.passive[kind].isEmpty()) continue;
        QColor faint = colours.passive[kind];
        faint.setAlpha(110);
        QPainterPath area = toWidget.map(outlines.passiveArea[kind]);
        area.setFillRule(Qt::WindingFill);
        if (hatchings[kind] != Qt::NoBrush) painter.fillPath(area, QBrush(faint, hatchings[kind]));
        painter.strokePath(
            toWidget.map(outlines.passive[kind]),
            QPen(colours.passive[kind], OUTLINE_THICKNESS, Qt::SolidLine, Qt::SquareCap));
    }
    painter.restore();
}

void PlatePainter::drawFloating(const QPainterPath& outline) {
    if (!outline.isEmpty())
        painter.strokePath(transform.matrix().map(outline),
                           QPen(colours.floating, OUTLINE_THICKNESS, Qt::SolidLine, Qt::SquareCap));
}

void PlatePainter::drawSupportSign(const SupportSign& sign) {
    painter.setPen(QPen(colours.rim, RIM));
    painter.setBrush(colours.support);
    painter.drawPolygon(polygonOf(sign.triangle));
    if (sign.rollerRadius > 0)
        painter.drawEllipse(toQt(sign.rollerCentre), sign.rollerRadius, sign.rollerRadius);
    painter.setPen(QPen(colours.support, SUPPORT_GROUND_THICKNESS));
    painter.drawLine(toQt(sign.ground[0]), toQt(sign.ground[1]));
}

void PlatePainter::drawLoads(const Scene& scene, const PlateLook& look) {
    const auto arrows = arrowsOf(scene, look.forces, transform, look.held);
    for (const LoadArrow& arrow : arrows)
        if (look.selectedLoad != arrow.load) drawArrow(arrow, look);
    // On top of all others.
    for (const LoadArrow& arrow : arrows)
        if (look.selectedLoad == arrow.load) drawArrow(arrow, look);
    for (const auto& [load, own] : byLoad(arrows, scene, transform)) {
        if (scene.loadCaseCount() > 1) drawLoadCase(handleOf(own), scene, look);
        if (look.selectedLoad != load) continue;
        drawHandles(handleOf(own));
        drawForce(handleOf(own), forceOf(scene.loads[load]));
    }
}

QColor PlatePainter::colourOf(int loadCase, const PlateLook& look) const {
    const auto index = static_cast<std::size_t>(loadCase);
    const bool isUsed = index >= look.loadCasesInUse.size() || look.loadCasesInUse[index];
    return isUsed ? colours.load(loadCase) : mixed(colours.load(loadCase), colours.voids, 0.7);
}

void PlatePainter::drawArrow(const LoadArrow& arrow, const PlateLook& look) {
    painter.setPen(QPen(colours.rim, RIM));
    painter.setBrush(colourOf(arrow.loadCase, look));
    painter.drawPolygon(polygonOf(arrowShape(arrow)));
}

void PlatePainter::drawLoadCase(const LoadArrow& arrow, const Scene& scene, const PlateLook& look) {
    const Point away = arrow.tailAtNode ? arrow.direction : -1 * arrow.direction;
    painter.setPen(colourOf(arrow.loadCase, look));
    QFont font = painter.font();
    font.setBold(true);
    painter.setFont(font);
    const auto& name = scene.loadCases[static_cast<std::size_t>(arrow.loadCase)].name;
    const QString text = painter.fontMetrics().elidedText(
        name.empty() ? QObject::tr("case %1").arg(arrow.loadCase) : QString::fromStdString(name),
        Qt::ElideRight, CASE_NAME_WIDTH);
    QRectF box(0, 0, painter.fontMetrics().horizontalAdvance(text) + 2, 16);
    // Words are wider than they are high.
    const double gap = 11 + 0.5 * std::max(0.0, box.width() - 6) * std::abs(away.x);
    box.moveCenter(toQt(arrow.freeEnd() + gap * away));
    painter.drawText(box, Qt::AlignCenter, text);
}

void PlatePainter::drawHandles(const LoadArrow& arrow) {
    painter.setPen(QPen(colours.hand, 2));
    painter.setBrush(colours.rim);
    painter.drawEllipse(toQt(arrow.freeEnd()), HANDLE_RADIUS, HANDLE_RADIUS);
    QRectF foot(0, 0, 2 * HANDLE_RADIUS, 2 * HANDLE_RADIUS);
    foot.moveCenter(toQt(arrow.foot()));
    painter.drawRect(foot);
}

/// Beside the arrow, to the right, with a ground of its own: it may lie on the material.
void PlatePainter::drawForce(const LoadArrow& arrow, double force) {
    const QString text = QLocale().toString(force, 'g', FORCE_DIGITS);
    QRectF box = QRectF(painter.fontMetrics().boundingRect(text)).adjusted(-4, -2, 4, 2);
    const QPointF middle = 0.5 * (toQt(arrow.tail) + toQt(arrow.tip()));
    box.moveCenter(middle);
    box.moveLeft(middle.x() + FORCE_GAP);
    QColor ground = colours.surroundings;
    ground.setAlpha(RULER_GROUND_ALPHA);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(box, 3, 3);
    painter.setPen(colours.hand);
    painter.drawText(box, Qt::AlignCenter, text);
}

void PlatePainter::drawRulers(const Scene& scene, const QRect& sight) {
    // Beyond the reflection of a symmetric plate, too.
    const QRectF plate = wholeRect(scene, transform);
    const Point corner = {
        std::max<double>(plate.left() - SIGN_MARGIN, RULER_WIDTH),
        std::min<double>(plate.bottom() + SIGN_MARGIN, sight.bottom() - RULER_HEIGHT)};
    painter.save();
    // Where the plate reaches beneath them.
    QColor ground = colours.surroundings;
    ground.setAlpha(RULER_GROUND_ALPHA);
    if (corner.x > plate.left())
        painter.fillRect(QRectF(0, 0, corner.x + RULER_GAP, sight.height()), ground);
    if (corner.y < plate.bottom())
        painter.fillRect(QRectF(0, corner.y - RULER_GAP, sight.width(), sight.height()), ground);
    painter.setPen(QPen(colours.edge, 1));
    QFont font = painter.font();
    font.setPixelSize(RULER_FONT);
    painter.setFont(font);
    const auto write = [&](const Ruler::Label& label) {
        const double width = painter.fontMetrics().horizontalAdvance(label.text.c_str());
        painter.drawText(toQt(label.at) - QPointF(label.align * width, 0), label.text.c_str());
    };
    for (const Ruler& ruler : rulers(scene, ofQt(transform.origin), transform.scale, corner)) {
        for (const auto& [from, to] : ruler.lines) painter.drawLine(toQt(from), toQt(to));
        for (const Ruler::Label& number : ruler.numbers) write(number);
        write(ruler.axis);
    }
    painter.restore();
}

void PlatePainter::drawFault(QPointF place) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colours.rim, 5));
    painter.drawEllipse(place, FAULT_RADIUS, FAULT_RADIUS);
    painter.setPen(QPen(colours.fault, 2.5));
    painter.drawEllipse(place, FAULT_RADIUS, FAULT_RADIUS);
    const QPointF mark = place + QPointF(FAULT_RADIUS, -FAULT_RADIUS);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours.fault);
    painter.drawEllipse(mark, 7, 7);
    painter.setPen(colours.rim);
    painter.drawText(QRectF(mark - QPointF(7, 7), QSizeF(14, 14)), Qt::AlignCenter, "!");
}
