#include "load_tools.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "number_text.h"
#include "reflection.h"

namespace {

constexpr double GRIP = 11;           // pixels from the end of an arrow that still take hold of it
constexpr double SHAFT_GRIP = 7;      // pixels from its shaft
constexpr double LEAST_PULL = 14;     // pixels; a shorter drag does not mean a direction
constexpr double MOST_DISTANCE = 24;  // pixels from a node that still mean it
constexpr double SNAP_ANGLE = 15;     // degrees
constexpr double SNAP_RANGE = 3.5;
constexpr double TURN_SLACK = 1.25;  // ratio of distances within which a hand only turns an arrow
constexpr double FORCE_STEP = 0.05;  // of the force that a hand began with
constexpr double TURN_STEP = 5;      // degrees
constexpr double SCALE_STEP = 1.1;
constexpr qint64 SUCCESSION = 1000;  // ms between keys of one step

double length(QPointF vector) { return std::hypot(vector.x(), vector.y()); }

double distanceToLine(QPointF point, QPointF from, QPointF to) {
    const QPointF along = to - from;
    const double squared = QPointF::dotProduct(along, along);
    if (squared == 0) return length(point - from);
    const double share = std::clamp(QPointF::dotProduct(point - from, along) / squared, 0.0, 1.0);
    return length(point - (from + share * along));
}

/// The force of an arrow whose free end has been taken so far from its node. A hand that turns it
/// does not keep the distance exactly, and must not change the force.
double pulledForce(const Grip& grip, double distance, bool isFree) {
    const double ratio = distance / grip.length;
    double factor = 1;
    if (ratio > TURN_SLACK) factor = ratio / TURN_SLACK;
    if (ratio < 1 / TURN_SLACK) factor = ratio * TURN_SLACK;
    if (!isFree) factor = std::max(FORCE_STEP, std::round(factor / FORCE_STEP) * FORCE_STEP);
    return factor * grip.force;
}

/// Points a load along `pull`, in pixels. Near the axes and diagonals it snaps to them, unless the
/// hand holds Shift.
void pullArrow(Load& load, QPointF pull, const Grip& grip, bool isFree) {
    double degrees = std::atan2(pull.y(), pull.x()) * 180 / std::numbers::pi;
    if (!isFree) {
        const double snapped = std::round(degrees / SNAP_ANGLE) * SNAP_ANGLE;
        if (std::abs(degrees - snapped) < SNAP_RANGE) degrees = snapped;
    }
    setForce(load, pulledForce(grip, length(pull), isFree), degrees * std::numbers::pi / 180);
}

double distanceTo(const Load& load, const Node& node) {
    return std::hypot(0.5 * (load.x.from + load.x.to) - node.x,
                      0.5 * (load.y.from + load.y.to) - node.y);
}

/// The force of a new load: that of the nearest load with a force.
double forceOfNeighbour(const Scene& scene, const Node& node, double otherwise) {
    const Load* nearest = nullptr;
    for (const Load& load : scene.loads) {
        if (forceOf(load) == 0) continue;
        if (nearest == nullptr || distanceTo(load, node) < distanceTo(*nearest, node))
            nearest = &load;
    }
    return nearest == nullptr ? otherwise : forceOf(*nearest);
}

QString describeLoad(const Load& load, std::size_t index) {
    return QObject::tr("Load %1 at x %2, y %3: force %4, %5")
        .arg(index + 1)
        .arg(load.x.from)
        .arg(load.y.from)
        .arg(numberText(load.fx), numberText(load.fy));
}

}  // namespace

ArrowsByLoad SelectTool::arrows() const {
    return byLoad(arrowsOf(site.scene(), site.bench.forces(), site.transform, heldLoad()),
                  site.scene(), site.transform);
}

std::optional<SelectTool::Hold> SelectTool::findOn(const std::vector<LoadArrow>& arrows,
                                                   const Hand& hand) const {
    const LoadArrow& handle = handleOf(arrows);
    const Load& load = site.scene().loads[handle.load];
    const QPointF offset = QPointF(load.x.from, load.y.from) - hand.plate;
    if (length(hand.widget - toQt(handle.freeEnd())) < GRIP) {
        // One without a force gets an ordinary one.
        const double force = forceOf(load) > 0 ? forceOf(load) : site.bench.forces().unit();
        return Hold{handle.load, Part::FREE_END,         handle.tailAtNode,
                    offset,      {force, handle.length}, false};
    }
    const bool isOnFoot = length(hand.widget - toQt(handle.foot())) < GRIP;
    const bool isOnShaft = std::any_of(arrows.begin(), arrows.end(), [&](const LoadArrow& arrow) {
        return distanceToLine(hand.widget, toQt(arrow.tail), toQt(arrow.tip())) < SHAFT_GRIP;
    });
    if (!isOnFoot && !isOnShaft) return std::nullopt;
    return Hold{handle.load, Part::FOOT, handle.tailAtNode,
                offset,      {},         hand.modifiers.testFlag(Qt::AltModifier)};
}

std::optional<SelectTool::Hold> SelectTool::find(const Hand& hand) const {
    const ArrowsByLoad drawn = arrows();
    const auto selected = site.bench.selectedLoad();
    if (selected && drawn.count(*selected) > 0)
        if (const auto hold = findOn(drawn.at(*selected), hand)) return hold;
    // The last one is drawn on top.
    for (auto load = drawn.rbegin(); load != drawn.rend(); ++load)
        if (const auto hold = findOn(load->second, hand)) return hold;
    return std::nullopt;
}

bool SelectTool::press(const Hand& hand) {
    held = find(hand);
    const auto piece = pieceAt(hand);
    clicked.reset();
    frameStart.reset();
    if (hand.modifiers.testFlag(Qt::ControlModifier)) {
        held.reset();
        gesture = Document::NO_GESTURE;
        if (piece)
            site.bench.toggle(*piece);
        else
            frameStart = frameEnd = hand.plate;
        return true;
    }
    const bool turns = held && held->part == Part::FREE_END;
    if (piece && !turns && site.bench.isSelected(*piece) && !site.bench.selection()) {
        held.reset();
        clicked = piece;
        beginGesture();
        pieces.take(site.bench.selectedPieces(), hand);
        return true;
    }
    site.bench.select(piece);
    beginGesture();
    if (piece && !held) pieces.take({*piece}, hand);
    return piece.has_value();
}

std::optional<PieceId> SelectTool::pieceAt(const Hand& hand) const {
    if (const auto load = find(hand)) return PieceId::load(load->load);
    return pieces.find(hand);
}

void SelectTool::drag(const Hand& hand) {
    if (frameStart) frameEnd = hand.plate;
    if (pieces.isHolding()) {
        const auto before = site.bench.document.snapshot();
        pieces.drag(hand, gesture);
        if (site.bench.document.snapshot() != before) clicked.reset();
        return;
    }
    if (!held || held->load >= site.scene().loads.size()) return;
    const std::size_t index = held->load;
    if (held->part == Part::FOOT) return dragFoot(hand);
    const QPointF fromNode = hand.widget - toQt(handleOf(arrows().at(index)).foot());
    const QPointF pull = held->isTailAtNode ? fromNode : -fromNode;
    if (length(pull) < 1) return;
    held->grip.reach = length(pull);
    site.bench.edit(
        QObject::tr("Turn load"),
        [&](Scene& scene) {
            pullArrow(scene.loads[index], pull, held->grip,
                      hand.modifiers.testFlag(Qt::ShiftModifier));
        },
        gesture);
}

void SelectTool::dragFoot(const Hand& hand) {
    const Node node = nearestNode(hand.plate + held->offset, site.scene());
    const Load& load = site.scene().loads[held->load];
    if (held->copies) {
        if (node == Node{load.x.from, load.y.from}) return;
        held->copies = false;
        if (!site.bench.putIn(QObject::tr("Copy load"), load, gesture)) return;
        held->load = site.scene().loads.size() - 1;
    }
    site.bench.edit(
        QObject::tr("Move load"), [&](Scene& scene) { moveLoad(scene, held->load, node); },
        gesture);
}

void SelectTool::cancel() {
    pieces.release();
    frameStart.reset();
    clicked.reset();
    Tool::cancel();
}

void SelectTool::release(const Hand&) {
    pieces.release();
    if (frameStart) selectWithin(QRectF(*frameStart, frameEnd).normalized());
    frameStart.reset();
    // A click on one of several means this one.
    if (clicked) site.bench.select(std::exchange(clicked, std::nullopt));
    if (held) held->grip.reach.reset();
    site.bench.setTurnedLoad(heldLoad());
    held.reset();
}

void SelectTool::selectWithin(const QRectF& frame) {
    auto chosen = site.bench.selectedPieces();
    for (const PieceId& id : piecesOf(site.scene())) {
        const Piece piece = pieceOf(site.scene(), id);
        const auto* support = std::get_if<Support>(&piece);
        if (support != nullptr && standsForPlane(*support, site.scene())) continue;
        const QRectF box = boxOf(piece);
        if (frame.contains(box.topLeft()) && frame.contains(box.bottomRight()) &&
            !site.bench.isSelected(id))
            chosen.push_back(id);
    }
    site.bench.select(std::move(chosen));
}

bool SelectTool::key(const QKeyEvent& event) {
    const bool turns = event.modifiers().testFlag(Qt::AltModifier);
    switch (event.key()) {
        case Qt::Key_N:
            selectNext(event.modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
            return true;
        case Qt::Key_Escape:
            site.bench.select(std::nullopt);
            return true;
        default:
            break;
    }
    if (site.bench.selectedPieces().empty()) return false;
    const bool isLoad = site.bench.selectedLoad().has_value();
    if (turns && !isLoad) return false;
    const int step = event.modifiers().testFlag(Qt::ShiftModifier) ? 5 : 1;
    switch (event.key()) {
        case Qt::Key_Left:
            turns ? turn(-TURN_STEP, 1) : nudge(-step, 0);
            return true;
        case Qt::Key_Right:
            turns ? turn(TURN_STEP, 1) : nudge(step, 0);
            return true;
        case Qt::Key_Up:
            turns ? turn(0, SCALE_STEP) : nudge(0, -step);
            return true;
        case Qt::Key_Down:
            turns ? turn(0, 1 / SCALE_STEP) : nudge(0, step);
            return true;
        default:
            return false;
    }
}

void SelectTool::selectNext(int step) {
    const auto all = piecesOf(site.scene());
    const auto count = static_cast<int>(all.size());
    if (count == 0) return;
    const auto selected = site.bench.selection();
    const auto found = selected ? std::find(all.begin(), all.end(), *selected) : all.end();
    const auto before =
        found != all.end() ? static_cast<int>(found - all.begin()) : (step > 0 ? -1 : 0);
    site.bench.select(all[static_cast<std::size_t>((before + step + count) % count)]);
}

void SelectTool::nudge(int dx, int dy) {
    doByKey("move", [&] { site.bench.moveSelected(dx, dy, keyGesture); });
}

void SelectTool::turn(double degrees, double factor) {
    changeByKey(QObject::tr("Turn load"), [&](Piece& piece) {
        Load& load = std::get<Load>(piece);
        const double radians = std::atan2(load.fy, load.fx) + degrees * std::numbers::pi / 180;
        const double force = forceOf(load) > 0 ? forceOf(load) : site.bench.forces().unit();
        setForce(load, factor * force, radians);
    });
}

void SelectTool::changeByKey(const QString& what, const std::function<void(Piece&)>& change) {
    doByKey(what, [&] { site.bench.changeSelected(what, change, keyGesture); });
}

void SelectTool::doByKey(const QString& what, const std::function<void()>& act) {
    const bool goesOn = sinceKey.isValid() && sinceKey.elapsed() < SUCCESSION &&
                        lastByKey == std::pair(what, site.bench.selectedPieces());
    if (!goesOn) keyGesture = site.bench.document.newGesture();
    act();
    sinceKey.start();
    lastByKey = {what, site.bench.selectedPieces()};
}

void SelectTool::paintHint(QPainter& painter, const Hand& hand, const PlateColours& colours) const {
    if (held && held->part == Part::FOOT && held->load < site.scene().loads.size()) {
        const Load& load = site.scene().loads[held->load];
        paintNodes(painter, site, {{load.x.from, load.y.from}}, colours.hand);
        return;
    }
    if (frameStart) {
        const QRectF frame = QRectF(*frameStart, frameEnd).normalized();
        painter.setPen(QPen(colours.hand, 1, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(site.transform.toWidget(frame.topLeft()),
                                site.transform.toWidget(frame.bottomRight())));
        return;
    }
    if (pieces.isHolding()) return;
    const auto hold = find(hand);
    if (!hold) {
        const auto piece = pieces.find(hand);
        if (!piece) return paintCells(painter, site, {cellAt(hand.plate)}, colours.edge);
        return paintFrame(painter, site.transform, boxOf(pieceOf(site.scene(), *piece)),
                          colours.edge);
    }
    const LoadArrow taken = handleOf(arrows().at(hold->load));
    painter.setPen(QPen(colours.hand, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(toQt(hold->part == Part::FOOT ? taken.foot() : taken.freeEnd()), GRIP - 3,
                        GRIP - 3);
}

QString SelectTool::countOfSelection() const {
    const auto count = static_cast<int>(site.bench.selectedPieces().size());
    return QObject::tr("%n piece(s) selected", nullptr, count);
}

QString SelectTool::describe(const Hand& hand) const {
    if (site.bench.selectedPieces().size() > 1) {
        const QString place = Tool::describe(hand);
        return place.isEmpty() ? countOfSelection() : place + "  ·  " + countOfSelection();
    }
    const auto& loads = site.scene().loads;
    if (held && held->load < loads.size()) return describeLoad(loads[held->load], held->load);
    if (const auto hold = find(hand)) return describeLoad(loads[hold->load], hold->load);
    if (pieces.isHolding() && site.bench.selection())
        return describePiece(site.scene(), *site.bench.selection());
    const QString place = Tool::describe(hand);
    const auto piece = pieces.find(hand);
    if (!piece) return place;
    const QString name = describePiece(site.scene(), *piece);
    return place.isEmpty() ? name : place + "  ·  " + name;
}

Qt::CursorShape SelectTool::cursor(const Hand& hand) const {
    if (held || pieces.isHolding()) return Qt::ClosedHandCursor;
    return pieceAt(hand) ? Qt::OpenHandCursor : Qt::ArrowCursor;
}

std::optional<HeldLoad> SelectTool::heldLoad() const {
    if (held && held->part == Part::FREE_END)
        return HeldLoad{held->load, held->isTailAtNode, held->grip.reach};
    return Tool::heldLoad();
}

bool LoadTool::press(const Hand& hand) {
    const Node nearest = nearestNode(hand.plate, site.scene());
    if (length(hand.widget - site.transform.toWidget(nearest.x, nearest.y)) >
        std::max(MOST_DISTANCE, site.transform.scale))
        return false;
    beginGesture();
    node = nearest;
    wasPulled = false;
    const ForceScale& forces = site.bench.forces();
    const double force = forceOfNeighbour(site.scene(), *node, forces.unit());
    grip = {force, forces.length(force, true)};
    Load load;
    load.x = {node->x, node->x};
    load.y = {node->y, node->y};
    load.fy = force;
    load.loadCase = site.bench.loadCase();
    const bool isAdded = site.bench.edit(
        QObject::tr("Add load"), [&](Scene& scene) { scene.loads.push_back(load); }, gesture);
    if (isAdded) site.bench.select(site.scene().loads.size() - 1);
    return true;
}

void LoadTool::drag(const Hand& hand) {
    if (!node || site.scene().loads.empty()) return;
    const QPointF pull = hand.widget - site.transform.toWidget(node->x, node->y);
    wasPulled = wasPulled || length(pull) >= LEAST_PULL;
    if (!wasPulled) return;
    grip.reach = length(pull);
    site.bench.edit(
        QObject::tr("Add load"),
        [&](Scene& scene) {
            pullArrow(scene.loads.back(), pull, grip, hand.modifiers.testFlag(Qt::ShiftModifier));
        },
        gesture);
}

void LoadTool::release(const Hand&) {
    grip.reach.reset();
    site.bench.setTurnedLoad(heldLoad());
    node.reset();
}

void LoadTool::cancel() {
    node.reset();
    Tool::cancel();
}

void LoadTool::paintHint(QPainter& painter, const Hand& hand, const PlateColours& colours) const {
    paintNodes(painter, site, {node ? *node : nearestNode(hand.plate, site.scene())}, colours.hand);
}

QString LoadTool::describe(const Hand& hand) const {
    if (node && !site.scene().loads.empty())
        return describeLoad(site.scene().loads.back(), site.scene().loads.size() - 1);
    return describeNode(site.scene(), nearestNode(hand.plate, site.scene()));
}

std::optional<HeldLoad> LoadTool::heldLoad() const {
    if (!node || !wasPulled || site.scene().loads.empty()) return Tool::heldLoad();
    return HeldLoad{site.scene().loads.size() - 1, true, grip.reach};
}
