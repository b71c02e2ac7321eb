#include "plate_painter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "area_outline.h"

namespace {

constexpr double SUPPORT_SIZE = 11;  // pixels, like all below
constexpr double SUPPORT_SPACING = 18;
constexpr double OUTLINE_THICKNESS = 2;
constexpr double LEAST_GRID_SCALE = 11;  // a finer grid would be a haze
constexpr double HANDLE_RADIUS = 5;
constexpr double FAULT_RADIUS = 13;

/// Unit vector from the plate to the side on which the sign of a support stands.
QPointF outward(const Support& support, const Scene& scene) {
    const double x = 0.5 * (support.x.from + support.x.to);
    const double y = 0.5 * (support.y.from + support.y.to);
    const QPointF sideways(x <= 0.5 * scene.width ? -1 : 1, 0);
    const QPointF upright(0, y < 0.5 * scene.height ? -1 : 1);
    if (!support.fixY) return sideways;
    if (!support.fixX) return upright;
    if (support.x.count() != support.y.count())
        return support.x.count() < support.y.count() ? sideways : upright;
    const double toSide = std::min(x, scene.width - x);
    const double toTopOrBottom = std::min(y, scene.height - y);
    return toSide < toTopOrBottom ? sideways : upright;
}

/// The arrow with this end at its node.
PlateArrow atNode(const PlateArrow& arrow, std::optional<bool> isTailAtNode) {
    if (!isTailAtNode || *isTailAtNode == arrow.isTailAtNode) return arrow;
    const QPointF along = arrow.tip - arrow.tail;
    const QPointF node = arrow.foot();
    return *isTailAtNode ? PlateArrow{node, node + along, true}
                         : PlateArrow{node - along, node, false};
}

QPainterPath areaOf(const Cells& cells) {
    QPainterPath path;
    for (const Cell& cell : cells) path.addRect(cell.x, cell.y, 1, 1);
    return path;
}

}  // namespace

QPainterPath cellOutline(const Cells& cells, int width, int height) {
    // With a margin, so that every element has four neighbours.
    const auto columns = static_cast<std::size_t>(width) + 2;
    std::vector<std::uint8_t> inside(columns * (static_cast<std::size_t>(height) + 2));
    const auto at = [&](int x, int y) -> std::uint8_t& {
        return inside[static_cast<std::size_t>(y + 1) * columns + static_cast<std::size_t>(x + 1)];
    };
    for (const Cell& cell : cells) at(cell.x, cell.y) = 1;
    QPainterPath path;
    const auto line = [&](int x1, int y1, int x2, int y2) {
        path.moveTo(x1, y1);
        path.lineTo(x2, y2);
    };
    for (const auto& [x, y] : cells) {
        if (at(x - 1, y) == 0) line(x, y, x, y + 1);
        if (at(x + 1, y) == 0) line(x + 1, y, x + 1, y + 1);
        if (at(x, y - 1) == 0) line(x, y, x + 1, y);
        if (at(x, y + 1) == 0) line(x, y + 1, x + 1, y + 1);
    }
    return path;
}

PlateOutlines::PlateOutlines(const Scene& scene) {
    const std::array<const Area*, 3> kinds = {&scene.passive.voids, &scene.passive.solids,
                                              &scene.passive.secondSolids};
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
        for (const auto& [from, to] : outlineOf(*kinds[kind], scene.width, scene.height)) {
            passive[kind].moveTo(from.x, from.y);
            passive[kind].lineTo(to.x, to.y);
        }
        passiveArea[kind] = areaOf(kinds[kind]->cells);
    }
}

void PlatePainter::draw(const Scene& scene, const PlateLook& look) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    drawMaterial(scene, look);
    drawPassive(look.outlines);
    for (const Support& support : scene.supports) drawSupport(support, scene);
    for (std::size_t i = 0; i < scene.loads.size(); ++i)
        if (look.selectedLoad != i) drawLoad(scene.loads[i], scene, look, false);
    if (look.selectedLoad && *look.selectedLoad < scene.loads.size())
        drawLoad(scene.loads[*look.selectedLoad], scene, look, true);
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

void PlatePainter::drawGrid(const Scene& scene) {
    if (transform.scale < LEAST_GRID_SCALE) return;
    QColor faint = colours.edge;
    faint.setAlpha(36);
    painter.setPen(QPen(faint, 1));
    QList<QLineF> lines;
    for (int x = 1; x < scene.width; ++x)
        lines.append({transform.toWidget(x, 0), transform.toWidget(x, scene.height)});
    for (int y = 1; y < scene.height; ++y)
        lines.append({transform.toWidget(0, y), transform.toWidget(scene.width, y)});
    painter.drawLines(lines);
}

void PlatePainter::drawPassive(const PlateOutlines& outlines) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QTransform toWidget(transform.scale, 0, 0, transform.scale, transform.origin.x(),
                              transform.origin.y());
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

void PlatePainter::drawSupportSign(QPointF tip, QPointF out, bool isRoller) {
    const QPointF across(-out.y(), out.x());
    const double size = isRoller ? 0.75 * SUPPORT_SIZE : SUPPORT_SIZE;
    const QPointF base = tip + size * out;
    painter.setPen(QPen(colours.rim, 1.2));
    painter.setBrush(colours.support);
    painter.drawPolygon(QPolygonF({tip, base + 0.6 * size * across, base - 0.6 * size * across}));
    const double wheel = 0.22 * SUPPORT_SIZE;
    if (isRoller) painter.drawEllipse(base + wheel * out, wheel, wheel);
    const QPointF ground = tip + 1.25 * SUPPORT_SIZE * out;
    painter.setPen(QPen(colours.support, 1.5));
    painter.drawLine(ground + 0.8 * SUPPORT_SIZE * across, ground - 0.8 * SUPPORT_SIZE * across);
}

void PlatePainter::drawSupport(const Support& support, const Scene& scene) {
    const QPointF out = outward(support, scene);
    for (const QPointF node : signPlaces(support.x, support.y, SUPPORT_SPACING, transform.scale))
        drawSupportSign(transform.toWidget(node), out, !(support.fixX && support.fixY));
}

void PlatePainter::drawArrow(const PlateArrow& arrow, const QColor& colour) {
    const QPointF direction = (arrow.tip - arrow.tail) / arrow.length();
    const QPointF across(-direction.y(), direction.x());
    const QPointF neck = arrow.tip - 11 * direction;
    painter.setPen(QPen(colours.rim, 1.2));
    painter.setBrush(colour);
    painter.drawPolygon(
        QPolygonF({arrow.tail + 1.5 * across, neck + 1.5 * across, neck + 5.5 * across, arrow.tip,
                   neck - 5.5 * across, neck - 1.5 * across, arrow.tail - 1.5 * across}));
}

void PlatePainter::drawLoad(const Load& load, const Scene& scene, const PlateLook& look,
                            bool isSelected) {
    const auto loadCase = static_cast<std::size_t>(load.loadCase);
    const bool isUsed = loadCase >= look.loadCasesInUse.size() || look.loadCasesInUse[loadCase];
    QColor colour = colours.load(load.loadCase);
    if (!isUsed) colour = mixed(colour, colours.voids, 0.7);
    const auto held = isSelected ? look.tailHeldAtNode : std::nullopt;
    const PlateArrow handle = atNode(handleOf(load, scene, look.forces, transform), held);
    for (const PlateArrow& arrow : arrowsOf(load, scene, look.forces, transform))
        drawArrow(atNode(arrow, held), colour);
    if (scene.loadCases > 1) drawLoadCase(handle, load.loadCase, colour);
    if (isSelected) drawHandles(handle);
}

void PlatePainter::drawLoadCase(const PlateArrow& arrow, int loadCase, const QColor& colour) {
    const QPointF away = (arrow.freeEnd() - arrow.foot()) / arrow.length();
    QRectF box(0, 0, 40, 16);
    box.moveCenter(arrow.freeEnd() + 11 * away);
    painter.setPen(colour);
    QFont font = painter.font();
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(box, Qt::AlignCenter, QString::number(loadCase));
}

void PlatePainter::drawHandles(const PlateArrow& arrow) {
    painter.setPen(QPen(colours.hand, 2));
    painter.setBrush(colours.rim);
    painter.drawEllipse(arrow.freeEnd(), HANDLE_RADIUS, HANDLE_RADIUS);
    QRectF foot(0, 0, 2 * HANDLE_RADIUS, 2 * HANDLE_RADIUS);
    foot.moveCenter(arrow.foot());
    painter.drawRect(foot);
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
