#include "paint_tools.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <iterator>
#include <optional>
#include <utility>

#include "number_text.h"
#include "reflection.h"

namespace {

// Supports are painted node by node: a row of them holds an edge.
constexpr Brush NODE_BRUSH = {1, true};

bool haveCommon(const Cells& some, const Cells& others) {
    // Both are sorted.
    return std::any_of(some.begin(), some.end(), [&](const Cell& cell) {
        return std::binary_search(others.begin(), others.end(), cell);
    });
}

/// In a symmetric scene, a stroke may also cross the reflected half.
Cells strokeOf(const ToolSite& site, QPointF from, QPointF to) {
    const Scene& scene = site.scene();
    const Brush& brush = site.bench.brush();
    const Cells cells = strokeCells(brush, from, to, scene.width, scene.height);
    if (scene.symmetry == Symmetry::NONE) return cells;
    const Cells others = strokeCells(brush, reflectedPlace(scene, from), reflectedPlace(scene, to),
                                     scene.width, scene.height);
    Cells all;
    std::set_union(cells.begin(), cells.end(), others.begin(), others.end(),
                   std::back_inserter(all));
    return all;
}

/// In a symmetric scene, the reflected half stands for its own nodes, too.
std::vector<Node> nodesOfStroke(const ToolSite& site, const Brush& brush, QPointF from,
                                QPointF to) {
    const Scene& scene = site.scene();
    auto nodes = strokeNodes(brush, from, to, scene.width, scene.height);
    if (scene.symmetry == Symmetry::NONE) return nodes;
    const auto others = strokeNodes(brush, reflectedPlace(scene, from), reflectedPlace(scene, to),
                                    scene.width, scene.height);
    nodes.insert(nodes.end(), others.begin(), others.end());
    return nodes;
}

/// The same on both sides of a mirror, for a design that is drawn.
Cells drawnOnBothSides(const ToolSite& site, const Cells& cells) {
    return mirrored(cells, site.bench.mirror(), site.scene().width, site.scene().height);
}

Cells drawnStroke(const ToolSite& site, QPointF from, QPointF to) {
    return drawnOnBothSides(site, strokeOf(site, from, to));
}

bool isHit(const Load& load, const std::vector<Node>& nodes) {
    return std::any_of(nodes.begin(), nodes.end(), [&](const Node& node) {
        return load.x.contains(node.x) && load.y.contains(node.y);
    });
}

/// A brush that leaves something on its way.
class BrushTool : public Tool {
public:
    /// Leaves it between two places, as part of a gesture.
    using Paint = std::function<void(QPointF from, QPointF to, int gesture)>;
    using HintColour = std::function<QColor(const PlateColours& colours)>;

    BrushTool(const ToolSite& toolSite, HintColour hint, Paint painting)
        : Tool(toolSite), hintColour(std::move(hint)), paint(std::move(painting)) {}

    bool press(const Hand& hand) override {
        beginGesture();
        paint(startOf(hand), hand.plate, gesture);
        last = hand.plate;
        return true;
    }
    void drag(const Hand& hand) override {
        const QPointF from = last.value_or(hand.plate);
        last = hand.plate;
        paint(from, hand.plate, gesture);
    }
    void cancel() override {
        last.reset();
        Tool::cancel();
    }
    void paintHint(QPainter& painter, const Hand& hand,
                   const PlateColours& colours) const override {
        const bool isLine = last && hand.modifiers.testFlag(Qt::ShiftModifier);
        paintCells(painter, site, strokeOf(site, isLine ? *last : hand.plate, hand.plate),
                   hintColour(colours));
    }

private:
    /// With Shift a straight line comes from where the stroke before ended.
    QPointF startOf(const Hand& hand) const {
        return last && hand.modifiers.testFlag(Qt::ShiftModifier) ? *last : hand.plate;
    }

    HintColour hintColour;
    Paint paint;
    std::optional<QPointF> last;
};

/// A brush that can also leave one rectangle or disc, which is drawn from press to release.
class AreaTool : public BrushTool {
public:
    using PaintArea = std::function<void(const Area& area, int gesture)>;

    AreaTool(const ToolSite& toolSite, const HintColour& hint, const PaintArea& painting)
        : BrushTool(toolSite, hint,
                    [=](QPointF from, QPointF to, int stroke) {
                        painting({strokeOf(toolSite, from, to), {}}, stroke);
                    }),
          hintOfShape(hint),
          paintArea(painting) {}

    bool paintsShapes() const override { return true; }
    bool press(const Hand& hand) override {
        if (site.bench.shape() == Shape::STROKE) return BrushTool::press(hand);
        beginGesture();
        start = end = hand.plate;
        return true;
    }
    void drag(const Hand& hand) override {
        if (!start) return BrushTool::drag(hand);
        end = hand.plate;
    }
    void release(const Hand& hand) override {
        if (!start) return BrushTool::release(hand);
        end = hand.plate;
        foldShape();
        const Area area = shapeArea();
        start.reset();
        if (!area.empty()) paintArea(area, gesture);
    }
    void cancel() override {
        start.reset();
        BrushTool::cancel();
    }
    void paintHint(QPainter& painter, const Hand& hand,
                   const PlateColours& colours) const override {
        if (start) return paintCells(painter, site, shapeArea().cells, hintOfShape(colours));
        if (site.bench.shape() == Shape::STROKE)
            return BrushTool::paintHint(painter, hand, colours);
        paintCells(painter, site, {cellAt(hand.plate)}, hintOfShape(colours));
    }
    QString describe(const Hand& hand) const override {
        if (!start) return BrushTool::describe(hand);
        if (site.bench.shape() == Shape::DISC) {
            const Ring disc = shapeRing();
            return QObject::tr("Disc at %1, %2, radius %3")
                .arg(placeText(disc.x), placeText(disc.y), placeText(disc.outer));
        }
        const Extent extent = shapeExtent();
        return QObject::tr("Rectangle of %1 × %2 elements at x %3, y %4")
            .arg(extent.x.count())
            .arg(extent.y.count())
            .arg(extent.x.from)
            .arg(extent.y.from);
    }

private:
    /// A shape on the mirrored half counts as its reflection.
    void foldShape() {
        if (site.scene().symmetry == Symmetry::NONE || !shapeArea().empty()) return;
        start = reflectedPlace(site.scene(), *start);
        end = reflectedPlace(site.scene(), end);
    }
    Extent shapeExtent() const {
        const Cell one = cellAt(*start);
        const Cell other = cellAt(end);
        return {{std::min(one.x, other.x), std::max(one.x, other.x)},
                {std::min(one.y, other.y), std::max(one.y, other.y)}};
    }
    /// From its centre to its border, in steps of half an element.
    Ring shapeRing() const {
        const auto rounded = [](double value) { return 0.5 * std::round(2 * value); };
        const QPointF way = end - *start;
        return {rounded(start->x()), rounded(start->y()), 0, rounded(std::hypot(way.x(), way.y()))};
    }
    Area shapeArea() const {
        return site.bench.shape() == Shape::DISC ? ringArea(shapeRing(), site.scene())
                                                 : rectangleArea(shapeExtent(), site.scene());
    }

    HintColour hintOfShape;
    PaintArea paintArea;
    std::optional<QPointF> start;  // of a rectangle or disc that is being drawn
    QPointF end;
};

QColor colourOfHand(const PlateColours& colours) { return colours.hand; }
QColor colourOfLoss(const PlateColours& colours) { return colours.fault; }

class SupportTool : public BrushTool {
public:
    using BrushTool::BrushTool;

    void paintHint(QPainter& painter, const Hand& hand,
                   const PlateColours& colours) const override {
        paintNodes(painter, site, {nodeAt(hand)}, colours.hand);
    }
    QString describe(const Hand& hand) const override {
        return describeNode(site.scene(), nodeAt(hand));
    }

private:
    /// On the mirrored half, the node that is held there.
    Node nodeAt(const Hand& hand) const {
        const Scene& scene = site.scene();
        const bool isMirrored =
            scene.symmetry != Symmetry::NONE &&
            strokeNodes(NODE_BRUSH, hand.plate, hand.plate, scene.width, scene.height).empty();
        return nearestNode(isMirrored ? reflectedPlace(scene, hand.plate) : hand.plate, scene);
    }
};

class LineTool : public Tool {
public:
    using Tool::Tool;

    bool press(const Hand& hand) override {
        beginGesture();
        start = end = hand.plate;
        return true;
    }
    void drag(const Hand& hand) override { end = hand.plate; }
    void release(const Hand& hand) override {
        if (!start) return;
        const Cells cells = drawnStroke(site, *start, hand.plate);
        start.reset();
        site.bench.draw(QObject::tr("Draw line"), cells, 1.0f, gesture);
    }
    void cancel() override { start.reset(); }
    void paintHint(QPainter& painter, const Hand& hand,
                   const PlateColours& colours) const override {
        paintCells(painter, site,
                   start ? drawnStroke(site, *start, end) : strokeOf(site, hand.plate, hand.plate),
                   colours.hand);
    }

private:
    std::optional<QPointF> start;
    QPointF end;
};

void erase(const ToolSite& site, QPointF from, QPointF to, int gesture) {
    const QString what = QObject::tr("Erase");
    const Cells cells = strokeOf(site, from, to);
    const auto nodes = nodesOfStroke(site, site.bench.brush(), from, to);
    const Area blob = site.bench.blob();
    const auto& loads = site.scene().loads;
    const bool hitsLoad = std::any_of(loads.begin(), loads.end(),
                                      [&](const Load& load) { return isHit(load, nodes); });
    const auto eraseOthers = [&](Scene& scene) {
        paintPassive(scene, {cells, {}}, std::nullopt);
        if (haveCommon(cells, blob.cells)) paintBlob(scene, blob, cells, false);
        eraseSupports(scene, nodes);
    };
    site.bench.edit(what, eraseOthers, gesture);
    // Apart, since it may be refused.
    if (hitsLoad)
        site.bench.edit(
            what, [&](Scene& scene) { eraseLoads(scene, nodes); }, gesture);
}

}  // namespace

std::unique_ptr<Tool> supportTool(const ToolSite& site, bool fixX, bool fixY) {
    const auto paint = [=](QPointF from, QPointF to, int gesture) {
        const auto nodes = nodesOfStroke(site, NODE_BRUSH, from, to);
        site.bench.edit(
            QObject::tr("Paint support"),
            [&](Scene& scene) { paintSupports(scene, nodes, fixX, fixY); }, gesture);
    };
    return std::make_unique<SupportTool>(site, colourOfHand, paint);
}

std::unique_ptr<Tool> passiveTool(const ToolSite& site, PassiveKind kind) {
    const std::array<QString, 3> names = {QObject::tr("Keep void"), QObject::tr("Keep solid"),
                                          QObject::tr("Keep second solid")};
    const auto index = static_cast<std::size_t>(kind);
    const auto colour = [=](const PlateColours& colours) { return colours.passive[index]; };
    const auto paint = [=](const Area& area, int gesture) {
        const Area& there = areaOf(site.scene().passive, kind);
        if (site.bench.shape() == Shape::STROKE) {
            const Area added = {newCells(there, area.cells), {}};
            site.bench.edit(
                names[index], [&](Scene& scene) { paintPassive(scene, added, kind); }, gesture);
            return;
        }
        // Its numbers are in sight then.
        if (!area.rings.empty() && exists(site.scene(), PieceId::area(kind, area.rings.front())))
            site.bench.select(PieceId::area(kind, area.rings.front()));
        else
            site.bench.putIn(names[index], KeptArea{kind, area}, gesture);
    };
    return std::make_unique<AreaTool>(site, colour, paint);
}

std::unique_ptr<Tool> blobTool(const ToolSite& site) {
    const auto colour = [](const PlateColours& colours) { return colours.blob; };
    const auto paint = [=](const Area& area, int gesture) {
        const Area blob = site.bench.blob();
        site.bench.edit(
            QObject::tr("Paint blob"),
            [&](Scene& scene) { paintBlob(scene, blob, area.cells, true); }, gesture);
    };
    return std::make_unique<AreaTool>(site, colour, paint);
}

std::unique_ptr<Tool> eraseTool(const ToolSite& site) {
    return std::make_unique<BrushTool>(
        site, colourOfLoss,
        [=](QPointF from, QPointF to, int gesture) { erase(site, from, to, gesture); });
}

std::unique_ptr<Tool> pencilTool(const ToolSite& site, bool draws) {
    const auto paint = [=](const Area& area, int gesture) {
        const Cells cells = drawnOnBothSides(site, area.cells);
        site.bench.draw(draws ? QObject::tr("Draw") : QObject::tr("Rub out"), cells,
                        draws ? 1.0f : 0.0f, gesture);
    };
    return std::make_unique<AreaTool>(site, draws ? colourOfHand : colourOfLoss, paint);
}

std::unique_ptr<Tool> lineTool(const ToolSite& site) { return std::make_unique<LineTool>(site); }
