#include "tool.h"

#include "number_text.h"
#include "plate_painter.h"

void Tool::cancel() {
    if (gesture != Document::NO_GESTURE) site.bench.document.cancel(gesture);
    gesture = Document::NO_GESTURE;
}

QString Tool::describe(const Hand& hand) const {
    const Cell cell = cellAt(hand.plate);
    const Scene& scene = site.scene();
    if (cell.x < 0 || cell.y < 0 || cell.x >= scene.width || cell.y >= scene.height) return {};
    return QObject::tr("Element x %1, y %2").arg(cell.x).arg(cell.y);
}

QString describeNode(const Scene& scene, const Node& node) {
    const QString place = QObject::tr("Node x %1, y %2").arg(node.x).arg(node.y);
    if (scene.elementSize == 1) return place;
    return place +
           QObject::tr(" (%1, %2 mm)")
               .arg(placeText(scene.elementSize * node.x), placeText(scene.elementSize * node.y));
}

void paintCells(QPainter& painter, const ToolSite& site, const Cells& cells, const QColor& colour) {
    Cells onPlate;
    const Scene& scene = site.scene();
    for (const Cell& cell : cells)
        if (cell.x >= 0 && cell.y >= 0 && cell.x < scene.width && cell.y < scene.height)
            onPlate.push_back(cell);
    const QPainterPath outline =
        site.transform.matrix().map(outlinePath(onPlate, scene.width, scene.height));
    QColor fill = colour;
    fill.setAlpha(60);
    for (const Cell& cell : onPlate)
        painter.fillRect(QRectF(site.transform.toWidget(cell.x, cell.y),
                                site.transform.toWidget(cell.x + 1, cell.y + 1)),
                         fill);
    painter.strokePath(outline, QPen(colour, 2, Qt::SolidLine, Qt::SquareCap));
}

void paintNodes(QPainter& painter, const ToolSite& site, const std::vector<Node>& nodes,
                const QColor& colour) {
    const Scene& scene = site.scene();
    painter.setPen(QPen(colour, 2));
    painter.setBrush(Qt::NoBrush);
    const double radius = std::clamp(0.3 * site.transform.scale, 2.5, 6.0);
    for (const Node& node : nodes)
        if (node.x >= 0 && node.y >= 0 && node.x <= scene.width && node.y <= scene.height)
            painter.drawEllipse(site.transform.toWidget(node.x, node.y), radius, radius);
}
