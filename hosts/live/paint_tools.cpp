#include "paint_tools.h"

#include <algorithm>
#include <utility>

namespace {

// Supports are painted node by node: a row of them holds an edge.
constexpr Brush NODE_BRUSH = {1, true};

bool haveCommon(const Cells& some, const Cells& others) {
    // Both are sorted.
    return std::any_of(some.begin(), some.end(), [&](const Cell& cell) {
        return std::binary_search(others.begin(), others.end(), cell);
    });
}

bool isHit(const Load& load, const std::vector<Node>& nodes) {
    return std::any_of(nodes.begin(), nodes.end(), [&](const Node& node) {
        return load.x.contains(node.x) && load.y.contains(node.y);
    });
}

}  // namespace

bool BrushTool::press(const Hand& hand) {
    beginGesture();
    last = hand.plate;
    paint(last, last);
    return true;
}

void BrushTool::drag(const Hand& hand) {
    const QPointF from = std::exchange(last, hand.plate);
    paint(from, last);
}

void BrushTool::paintHint(QPainter& painter, const Hand& hand, const PlateColours& colours) const {
    paintCells(painter, site, footprint(site.bench.brush(), hand.plate), hintColour(colours));
}

void SupportTool::paint(QPointF from, QPointF to) {
    const auto nodes = strokeNodes(NODE_BRUSH, from, to);
    site.bench.edit(
        QObject::tr("Paint support"),
        [&](Scene& scene) { paintSupports(scene, nodes, fixX, fixY); }, gesture);
}

void SupportTool::paintHint(QPainter& painter, const Hand& hand,
                            const PlateColours& colours) const {
    paintNodes(painter, site, {nearestNode(hand.plate, site.scene())}, colours.hand);
}

QString SupportTool::describe(const Hand& hand) const {
    const Node node = nearestNode(hand.plate, site.scene());
    return QObject::tr("Node x %1, y %2").arg(node.x).arg(node.y);
}

void PassiveTool::paint(QPointF from, QPointF to) {
    const Cells cells = strokeCells(site.bench.brush(), from, to);
    const std::array<QString, 3> names = {QObject::tr("Keep void"), QObject::tr("Keep solid"),
                                          QObject::tr("Keep second solid")};
    site.bench.edit(
        names[static_cast<std::size_t>(kind)],
        [&](Scene& scene) { paintPassive(scene, cells, kind); }, gesture);
}

QColor PassiveTool::hintColour(const PlateColours& colours) const {
    return colours.passive[static_cast<std::size_t>(kind)];
}

void BlobTool::paint(QPointF from, QPointF to) {
    const Cells cells = strokeCells(site.bench.brush(), from, to);
    const Area blob = site.bench.blob();
    site.bench.edit(
        QObject::tr("Paint blob"), [&](Scene& scene) { paintBlob(scene, blob, cells, true); },
        gesture);
}

void EraseTool::paint(QPointF from, QPointF to) {
    const Cells cells = strokeCells(site.bench.brush(), from, to);
    const auto nodes = strokeNodes(site.bench.brush(), from, to);
    const Area blob = site.bench.blob();
    const auto& loads = site.scene().loads;
    const bool hitsLoad = std::any_of(loads.begin(), loads.end(),
                                      [&](const Load& load) { return isHit(load, nodes); });
    site.bench.edit(
        QObject::tr("Erase"),
        [&](Scene& scene) {
            paintPassive(scene, cells, std::nullopt);
            if (haveCommon(cells, blob.cells)) paintBlob(scene, blob, cells, false);
            eraseSupports(scene, nodes);
        },
        gesture);
    // Apart, since it may be refused.
    if (hitsLoad)
        site.bench.edit(
            QObject::tr("Erase"), [&](Scene& scene) { eraseLoads(scene, nodes); }, gesture);
}

void PencilTool::paint(QPointF from, QPointF to) {
    const Cells cells = strokeCells(site.bench.brush(), from, to);
    site.bench.edit(
        draws ? QObject::tr("Draw") : QObject::tr("Rub out"),
        [&](Scene& scene) { paintDrawing(scene, cells, draws ? 1.0f : 0.0f); }, gesture);
}

QColor PencilTool::hintColour(const PlateColours& colours) const {
    return draws ? colours.hand : colours.fault;
}

bool LineTool::press(const Hand& hand) {
    beginGesture();
    start = end = hand.plate;
    return true;
}

void LineTool::release(const Hand& hand) {
    if (!start) return;
    const Cells cells = strokeCells(site.bench.brush(), *start, hand.plate);
    start.reset();
    site.bench.edit(
        QObject::tr("Draw line"), [&](Scene& scene) { paintDrawing(scene, cells, 1.0f); }, gesture);
}

void LineTool::paintHint(QPainter& painter, const Hand& hand, const PlateColours& colours) const {
    paintCells(painter, site,
               start ? strokeCells(site.bench.brush(), *start, end)
                     : footprint(site.bench.brush(), hand.plate),
               colours.hand);
}
